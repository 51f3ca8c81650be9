// Texts of any length in the controls that show and take them, each up to the next frame, in
// software. N is their length in characters.
//
//   pasteLines/N    into an editor: lines of ordinary length
//   pasteProse/N    one paragraph
//   pasteWord/N     one word
//   pasteGoals/N    lines of one character
//   typeIntoLines/N a character typed in the middle of such lines
//   pasteKey/N      into the field of a secret
//   storedLines/N   a stored text of lines of one character; its slowest frame, while its rest is
//                   worked out and while it is scrolled through, is "slowest"

#include "TextBlocks.h"

#include <QClipboard>
#include <QEventLoop>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QtQml/qqmlextensionplugin.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <memory>

Q_IMPORT_QML_PLUGIN(TARNE_StylingPlugin)

using namespace tarne;
using namespace Qt::StringLiterals;

namespace {

const QString editor = u"TextEditor { width: 600; height: 300; accessibleName: 'Notes'; "
                       "lineSpacing: 2; property string typed; text: typed; "
                       "onTextEdited: text => typed = text }"_s;
const QString secretField = u"SecureField { width: 400; property string typed; text: typed; "
                            "onTextEdited: text => typed = text }"_s;
const QString storedText = u"Flickable { width: 600; height: 500; contentHeight: stored.height; "
                           "LongText { id: stored; objectName: 'stored'; width: 600 } }"_s;

double cpuMilliseconds() {
    return static_cast<double>(std::clock()) * 1000 / CLOCKS_PER_SEC;
}

/// One control in a window.
class Stage {
public:
    explicit Stage(const QString &qml) {
        m_window.engine()->addImportPath(u"qrc:/qt/qml"_s);
        QQmlComponent component(m_window.engine());
        component.setData("import QtQuick\nimport TARNE.Styling\n" + qml.toUtf8(), {});
        m_control.reset(qobject_cast<QQuickItem *>(component.create()));
        m_control->setParentItem(m_window.contentItem());
        m_window.resize(800, 600);
        m_window.show();
        drawFrame();
    }

    void drawFrame() {
        QEventLoop untilDrawn;
        QObject::connect(&m_window, &QQuickWindow::frameSwapped, &untilDrawn, &QEventLoop::quit);
        m_window.update();
        untilDrawn.exec();
    }
    /// The milliseconds of a frame.
    double costOfFrame() {
        const double before = cpuMilliseconds();
        drawFrame();
        return cpuMilliseconds() - before;
    }
    QQuickItem &control() { return *m_control; }
    /// Qt's own item in the control, into which the user writes.
    QQuickItem *input() {
        for (QQuickItem *item : m_control->findChildren<QQuickItem *>()) {
            if (item->inherits("QQuickTextEdit") || item->inherits("QQuickTextInput"))
                return item;
        }
        return nullptr;
    }
    void paste(const QString &text) {
        QGuiApplication::clipboard()->setText(text);
        QQuickItem *const item = input();
        item->forceActiveFocus();
        QMetaObject::invokeMethod(item, "paste");
        drawFrame();
    }

private:
    QQuickView m_window;
    std::unique_ptr<QQuickItem> m_control;
};

void paste(benchmark::State &state, const QString &qml, const QString &piece) {
    const QString text = piece.repeated(state.range() / piece.size());
    for (auto _ : state) {
        state.PauseTiming();
        auto stage = std::make_unique<Stage>(qml);
        state.ResumeTiming();
        stage->paste(text);
        state.PauseTiming();
        stage.reset();
        state.ResumeTiming();
    }
}

void typeIntoLines(benchmark::State &state) {
    Stage stage(editor);
    stage.paste(
        u"The lines of an ordinary text, one below the other.\n"_s.repeated(state.range() / 52));
    const int middle = static_cast<int>(state.range() / 2);
    for (auto _ : state) {
        QMetaObject::invokeMethod(stage.input(), "insert", Q_ARG(int, middle),
                                  Q_ARG(QString, u"x"_s));
        stage.drawFrame();
    }
}

void storedLines(benchmark::State &state) {
    const QString text = u"a\n"_s.repeated(state.range() / 2);
    double slowest = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto stage = std::make_unique<Stage>(storedText);
        auto *const stored = stage->control().findChild<QQuickItem *>(u"stored"_s);
        const auto *const blocks = stored->findChild<TextBlocks *>();
        state.ResumeTiming();

        stored->setProperty("text", text);
        stage->drawFrame();

        state.PauseTiming();
        while (!blocks->isComplete())
            slowest = std::max(slowest, stage->costOfFrame());
        for (double place = 0; place < 1; place += 0.01) {
            stage->control().setProperty("contentY", place * stored->height());
            slowest = std::max(slowest, stage->costOfFrame());
        }
        stage.reset();
        state.ResumeTiming();
    }
    state.counters["slowest"] = slowest;
}

} // namespace

#define TARNE_SIZES Arg(100'000)->Arg(1'000'000)->Iterations(2)->Unit(benchmark::kMillisecond)
BENCHMARK_CAPTURE(paste, lines, editor, u"The lines of an ordinary text, one below the other.\n"_s)
    ->Name("pasteLines")
    ->TARNE_SIZES;
BENCHMARK_CAPTURE(paste, prose, editor, u"Words of a paragraph without an end, "_s)
    ->Name("pasteProse")
    ->TARNE_SIZES;
BENCHMARK_CAPTURE(paste, word, editor, u"x"_s)->Name("pasteWord")->TARNE_SIZES;
BENCHMARK_CAPTURE(paste, goals, editor, u"a\n"_s)->Name("pasteGoals")->TARNE_SIZES;
BENCHMARK(typeIntoLines)->TARNE_SIZES;
BENCHMARK_CAPTURE(paste, key, secretField, u"k"_s)->Name("pasteKey")->TARNE_SIZES;
BENCHMARK(storedLines)->TARNE_SIZES;

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
