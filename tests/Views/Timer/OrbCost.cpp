// tarne_orb_cost [<seconds>] [<progress>]
//
// Shows the pulsing orb in a window of the program's size, on the display at hand and with the
// software scene graph, and prints what it costs in percent of one core, user and system time
// together:
//
//     xvfb-run -a build/release/bin/tarne_orb_cost 20 0.9
//
// "hidden" is the same window hidden, "still" the same window with nothing that moves.

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTimer>

#include <cstdio>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

double cpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Lets the event loop run for `seconds` and returns the share of a core that it took, in percent.
double costOf(int seconds) {
    QElapsedTimer wall;
    wall.start();
    const double before = cpuSeconds();
    // Not quit(), which closes the windows.
    QTimer::singleShot(seconds * 1000, qGuiApp, [] { QCoreApplication::exit(); });
    QGuiApplication::exec();
    return 100 * (cpuSeconds() - before) / (static_cast<double>(wall.nsecsElapsed()) / 1e9);
}

} // namespace

int main(int argc, char **argv) {
    QQuickWindow::setSceneGraphBackend(u"software"_s);
    const QGuiApplication application(argc, argv);
    const int seconds = argc > 1 ? atoi(argv[1]) : 20;
    const QString progress = argc > 2 ? QString::fromLatin1(argv[2]) : u"0.9"_s;

    QQuickView view;
    view.engine()->addImportPath(u"qrc:/qt/qml"_s);
    QQmlComponent component(view.engine());
    component.setData(
        u"import QtQuick\nimport TARNE.Styling\nimport TARNE.Views\nRectangle { PlainText { text: "
        u"'TARNE' } "
        "GlowingOrbView { anchors.centerIn: parent; isActive: true; progress: %1 } }"_s
            .arg(progress)
            .toUtf8(),
        QUrl(u"qrc:/orb.qml"_s));
    view.setContent(QUrl(), nullptr, component.create());
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.resize(1000, 700);
    view.show();
    costOf(1);
    std::printf("pulsing %.2f %%\n", costOf(seconds));
    view.rootObject()->setEnabled(false);
    std::printf("still   %.2f %%\n", costOf(seconds / 2));
    view.rootObject()->setEnabled(true);
    view.hide();
    std::printf("hidden  %.2f %%\n", costOf(seconds / 2));
    return 0;
}
