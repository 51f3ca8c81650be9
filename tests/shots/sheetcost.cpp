// tarne_sheet_cost
//
// Measures the two sheets that end a session, off screen and with the software scene graph:
//
//     answer on screen   from the arrival of an answer of a megabyte to the frame that shows it
//     memory growth      of 1,000 presentations of both sheets, after 200 to warm up
//
// Meaningful in a release build only.

#include "OfflineSession.h"
#include "TimerView.h"

#include <QFile>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickView>
#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <unistd.h>

Q_IMPORT_QML_PLUGIN(TARNE_StylingPlugin)
Q_IMPORT_QML_PLUGIN(TARNE_ViewsPlugin)

using namespace Qt::StringLiterals;
using namespace tarne;
using SteadyClock = std::chrono::steady_clock;

namespace {

/// A running session in a window.
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
        nextFrame();
    }

    void presentReflection() {
        m_view.resetTimer();
        nextFrame();
    }
    void presentFeedback() {
        m_view.sessionReflection()->rate(0, 0);
        m_view.sessionReflection()->rate(1, 0);
        m_view.sessionReflection()->completeReflection();
        nextFrame();
    }
    void closeBoth() {
        m_view.sessionReflection()->feedback()->close();
        m_view.sessionReflection()->close();
        nextFrame();
    }

    /// Milliseconds from the arrival of the answer until it stands on the screen.
    double answer(const QByteArray &body) {
        const auto begin = SteadyClock::now();
        m_session.feedback.gemini.answer(body);
        m_session.time.runPending();
        nextFrame();
        return std::chrono::duration<double, std::milli>(SteadyClock::now() - begin).count();
    }

private:
    void nextFrame() {
        bool isShown = false;
        const auto connection =
            QObject::connect(&m_window, &QQuickWindow::frameSwapped, [&] { isShown = true; });
        m_window.update();
        while (!isShown)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QObject::disconnect(connection);
        m_session.log.takeLines();
    }

    shots::OfflineSession m_session;
    TimerView m_view{m_session.controller, m_session.defaults, m_session.time, m_session.center,
                     m_session.feedback.platform()};
    QQuickView m_window;
};

void measureAnswer() {
    const QByteArray quarter =
        QByteArray("A sentence that a model could have written. ").repeated(5'900);
    const QByteArray body = test::FeedbackFakes::answerWith(
        "**Overall Assessment:** " + quarter + R"(\n\n**Patterns Observed:** )" + quarter +
        R"(\n\n**Advice:** )" + quarter + R"(\n\n**Motivation:** )" + quarter);
    std::vector<double> times;
    for (int i = 0; i < 15; ++i) {
        Stage stage;
        stage.presentReflection();
        stage.presentFeedback();
        times.push_back(stage.answer(body));
    }
    std::ranges::sort(times);
    std::printf("answer of %.2f MB on screen: median %.1f ms, slowest %.1f ms\n",
                static_cast<double>(body.size()) / 1e6, times[times.size() / 2], times.back());
}

double residentMegabytes() {
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const double pages = file.readAll().split(' ').value(1).toDouble();
    return pages * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

void measureGrowth() {
    Stage stage;
    const auto present = [&](int count) {
        for (int i = 0; i < count; ++i) {
            stage.presentReflection();
            stage.presentFeedback();
            stage.answer(test::FeedbackFakes::answerInFourSections());
            stage.closeBoth();
        }
    };
    present(200);
    const double before = residentMegabytes();
    present(1000);
    const double after = residentMegabytes();
    std::printf("1,000 presentations: %.1f MB before, %.1f MB after\n", before, after);
}

} // namespace

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    measureAnswer();
    measureGrowth();
    return 0;
}
