// What the sheets at the end of a session cost, drawn in software and off screen.
//
//   answerRead/N           an answer of N bytes taken apart, which the transport's thread does
//   answerOnScreen/N       the main thread's part: from the answer's arrival on the main queue to
//                          the frame that shows its beginning. "slowest" is the slowest frame until
//                          its end is there too
//   wrapUpPresentation     both sheets presented, answered and closed. "resident" is how many bytes
//                          the process has grown by over all of them, "before" how many it had
//
// Times are those of the main thread's processor: the window waits before each frame so as not to
// outrun the display.

#include "BenchmarkSession.h"
#include "FeedbackFakes.h"
#include "GeminiAnswer.h"
#include "MemoryDefaults.h"
#include "ParsedFeedback.h"
#include "TextBlocks.h"
#include "TimerView.h"

#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QtQml/qqmlextensionplugin.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <unistd.h>

Q_IMPORT_QML_PLUGIN(TARNE_StylingPlugin)
Q_IMPORT_QML_PLUGIN(TARNE_ViewsPlugin)

using namespace Qt::StringLiterals;
using namespace tarne;
using namespace tarne::benchmarks;
using test::FeedbackFakes;

namespace {

double cpuMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double residentBytes() {
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').value(1).toDouble() *
           static_cast<double>(sysconf(_SC_PAGESIZE));
}

/// A body of Gemini's with four sections, `size` bytes long without its brackets.
QByteArray answerOf(qint64 size) {
    const QByteArray sentence = "A sentence that a model could have written. ";
    const QByteArray quarter = sentence.repeated(size / 4 / sentence.size());
    return FeedbackFakes::answerWith(
        "**Overall Assessment:** " + quarter + R"(\n\n**Patterns Observed:** )" + quarter +
        R"(\n\n**Advice:** )" + quarter + R"(\n\n**Motivation:** )" + quarter);
}

/// A running session in a window of the program's size.
class Stage {
public:
    Stage() {
        m_view.appear();
        m_session.controller.saveGoal(u"Write report, Review"_s);
        m_view.startTimer();
        m_window.engine()->addImportPath(u"qrc:/qt/qml"_s);
        m_window.setResizeMode(QQuickView::SizeRootObjectToView);
        m_window.resize(1000, 760);
        m_window.setInitialProperties({{u"view"_s, QVariant::fromValue(&m_view)}});
        m_window.setSource(QUrl(u"qrc:/qt/qml/TARNE/Views/TimerScreen.qml"_s));
        m_window.show();
        drawFrame();
    }

    void present() {
        m_view.resetTimer();
        drawFrame();
        m_view.sessionReflection()->rate(0, 0);
        m_view.sessionReflection()->rate(1, 0);
        m_view.sessionReflection()->completeReflection();
        m_view.sessionReflection()->feedback()->generateFeedback();
        drawFrame();
    }
    void close() {
        m_view.sessionReflection()->feedback()->close();
        m_view.sessionReflection()->close();
        drawFrame();
    }
    /// The answer has been read, and its outcome waits on the main queue.
    void receive(const QByteArray &body) { m_feedback.gemini.answer(body); }
    void showAnswer() {
        m_session.time.runPending();
        drawFrame();
    }
    [[nodiscard]] bool isAnswerComplete() const { return isComplete(*m_window.contentItem()); }

    void drawFrame() {
        // A loop of its own, since what is to be deleted later is deleted in none but such a one.
        QEventLoop untilDrawn;
        QObject::connect(&m_window, &QQuickWindow::frameSwapped, &untilDrawn, &QEventLoop::quit);
        m_window.update();
        untilDrawn.exec();
    }

    /// What the fakes note is no growth of the program's.
    void forgetWhatWasNoted() {
        m_feedback.gemini.requests.clear();
        m_feedback.gemini.requests.shrink_to_fit();
        m_defaults.takeWrites();
    }

private:
    /// Whether the texts in and below `item` are there to their ends.
    static bool isComplete(const QQuickItem &item) {
        const auto texts = item.findChildren<TextBlocks *>(Qt::FindDirectChildrenOnly);
        return std::ranges::all_of(texts, &TextBlocks::isComplete) &&
               std::ranges::all_of(item.childItems(),
                                   [](const QQuickItem *child) { return isComplete(*child); });
    }

    NoLog m_log;
    test::MemoryDefaults m_defaults;
    NotificationCenter m_center;
    BenchmarkSession m_session{m_defaults, Date::fromReferenceSeconds(700'000'000)};
    FeedbackFakes m_feedback{m_session.time, m_log};
    TimerView m_view{m_session.controller, m_defaults, m_session.time, m_center,
                     m_feedback.sheets(m_session.controller)};
    QQuickView m_window;
};

void answerRead(benchmark::State &state) {
    const HTTPResponse response{.status = 200, .body = answerOf(state.range())};
    for (auto _ : state) {
        const GeminiResult result = readGeminiResponse(response);
        auto sections = parseFeedbackText(std::get<QString>(result));
        benchmark::DoNotOptimize(sections);
    }
}

void answerOnScreen(benchmark::State &state) {
    const QByteArray body = answerOf(state.range());
    double slowest = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto stage = std::make_unique<Stage>();
        stage->present();
        stage->receive(body);
        state.ResumeTiming();

        stage->showAnswer();

        state.PauseTiming();
        while (!stage->isAnswerComplete()) {
            const double before = cpuMilliseconds();
            stage->drawFrame();
            slowest = std::max(slowest, cpuMilliseconds() - before);
        }
        stage.reset();
        state.ResumeTiming();
    }
    state.counters["slowest"] = slowest;
}

void presentation(benchmark::State &state) {
    Stage stage;
    const auto present = [&stage] {
        stage.present();
        stage.receive(FeedbackFakes::answerInFourSections());
        stage.showAnswer();
        stage.close();
        stage.forgetWhatWasNoted();
    };
    for (int i = 0; i < 200; ++i)
        present();
    const double before = residentBytes();
    for (auto _ : state)
        present();
    state.counters["resident"] = residentBytes() - before;
    state.counters["before"] = before;
}

} // namespace

BENCHMARK(answerRead)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK(answerOnScreen)->Arg(3'000)->Arg(1'000'000)->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(presentation)
    ->Name("wrapUpPresentation")
    ->Iterations(1000)
    ->Unit(benchmark::kMillisecond);

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
