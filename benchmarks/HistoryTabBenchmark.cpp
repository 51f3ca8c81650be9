// What the History tab costs as the history grows, drawn in software and off screen.
//
//   openHistoryTab/N      the tab is opened: the history read, grouped, and the first frame drawn.
//                         "bytes" is what the tab holds on the heap for each entry
//   scrollHistoryTab/N    one frame of scrolling down by 80 points; "slowest" is the slowest of all
//
// Times are those of the processor: the window waits before each frame so as not to outrun the
// display.

#include "BenchmarkHistory.h"
#include "BenchmarkSession.h"
#include "HistoryView.h"
#include "MemoryDefaults.h"
#include "StoredKeys.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QtQml/qqmlextensionplugin.h>

#include <benchmark/benchmark.h>

#include <ctime>
#include <malloc.h>

Q_IMPORT_QML_PLUGIN(TARNE_StylingPlugin)
Q_IMPORT_QML_PLUGIN(TARNE_ViewsPlugin)

using namespace tarne;
using namespace tarne::benchmarks;
using namespace Qt::StringLiterals;

namespace {

constexpr int framesToScroll = 200;
constexpr double pointsPerFrame = 80;

double cpuMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// A window of the program's size that is up already, as it is when a tab is opened.
class Window {
public:
    Window() {
        m_view.engine()->addImportPath(u"qrc:/qt/qml"_s);
        m_view.setContent(QUrl(), nullptr, new QQuickItem);
        m_view.setResizeMode(QQuickView::SizeRootObjectToView);
        m_view.resize(1000, 700);
        m_view.show();
        drawFrame();
    }

    QQuickItem *show(HistoryView &history) {
        QQmlComponent component(m_view.engine(),
                                QUrl(u"qrc:/qt/qml/TARNE/Views/HistoryScreen.qml"_s));
        auto *const screen = qobject_cast<QQuickItem *>(
            component.createWithInitialProperties({{u"view"_s, QVariant::fromValue(&history)}}));
        screen->setParentItem(m_view.rootObject());
        screen->setSize(m_view.rootObject()->size());
        return screen;
    }

    void drawFrame() {
        bool isDrawn = false;
        const auto drawn = QObject::connect(&m_view, &QQuickWindow::frameSwapped, &m_view,
                                            [&isDrawn] { isDrawn = true; });
        m_view.update();
        while (!isDrawn)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QObject::disconnect(drawn);
    }

private:
    QQuickView m_view;
};

/// A stored history and the tab's view object over it.
struct HistoryTab {
    explicit HistoryTab(qint64 entries)
        : session(defaults, endOfHistory(entries)),
          view(session.controller, center, session.time, BenchmarkSession::calendar) {
        defaults.setObject(keys::sessionHistory, documentOf(entries));
    }

    test::MemoryDefaults defaults;
    NotificationCenter center;
    BenchmarkSession session;
    HistoryView view;
};

void openHistoryTab(benchmark::State &state) {
    Window window;
    double heldBytes = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto tab = std::make_unique<HistoryTab>(state.range(0));
        const auto before = mallinfo2();
        state.ResumeTiming();

        tab->view.appear();
        QQuickItem *const screen = window.show(tab->view);
        window.drawFrame();

        state.PauseTiming();
        const auto after = mallinfo2();
        heldBytes = static_cast<double>(after.uordblks + after.hblkhd) -
                    static_cast<double>(before.uordblks + before.hblkhd);
        delete screen;
        tab.reset();
        window.drawFrame();
        state.ResumeTiming();
    }
    state.counters["bytes"] = heldBytes / static_cast<double>(state.range(0));
}

void scrollHistoryTab(benchmark::State &state) {
    Window window;
    HistoryTab tab(state.range(0));
    tab.view.appear();
    const std::unique_ptr<QQuickItem> screen(window.show(tab.view));
    window.drawFrame();
    QQuickItem *const list = screen->childItems().constFirst();
    const double top = list->property("contentY").toDouble();
    double slowest = 0;
    int frame = 0;
    for (auto _ : state) {
        // Down for a while and up again, so that the end is never reached.
        frame = (frame + 1) % framesToScroll;
        const int step = std::min(frame, framesToScroll - frame);
        const double before = cpuMilliseconds();
        list->setProperty("contentY", top + step * pointsPerFrame);
        window.drawFrame();
        slowest = std::max(slowest, cpuMilliseconds() - before);
    }
    state.counters["slowest"] = slowest;
}

} // namespace

BENCHMARK(openHistoryTab)
    ->RangeMultiplier(10)
    ->Range(100, 100000)
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(scrollHistoryTab)
    ->RangeMultiplier(10)
    ->Range(100, 100000)
    ->Iterations(2 * framesToScroll)
    ->Unit(benchmark::kMillisecond);

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setSceneGraphBackend(u"software"_s);
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
