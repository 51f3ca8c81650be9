// tarne_shots <folder>
//
// Draws the gallery of screens: real view objects and controllers over fake adapters and seeded
// data, off screen and in software. Run by scripts/shots, which puts it into docs/shots.

#include "Gallery.h"
#include "HistoryShots.h"
#include "ScheduleShots.h"
#include "SetupShots.h"
#include "ShellShots.h"
#include "TimerShots.h"
#include "WrapUpShots.h"

#include <QGuiApplication>
#include <QtQml/qqmlextensionplugin.h>

#include <cstdio>

Q_IMPORT_QML_PLUGIN(TARNEPlugin)
Q_IMPORT_QML_PLUGIN(TARNE_StylingPlugin)
Q_IMPORT_QML_PLUGIN(TARNE_ViewsPlugin)

int main(int argc, char **argv) {
    if (argc != 2) {
        std::fputs("tarne_shots <folder>\n", stderr);
        return 2;
    }
    // A look at a real display is one variable away.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND"))
        qputenv("QT_QUICK_BACKEND", "software");
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("TZ", "UTC");
    const QGuiApplication application(argc, argv);
    tarne::shots::Gallery gallery(QString::fromLocal8Bit(argv[1]));
    tarne::shots::takeShellShots(gallery);
    tarne::shots::takeTimerShots(gallery);
    tarne::shots::takeHistoryShots(gallery);
    tarne::shots::takeSetupShots(gallery);
    tarne::shots::takeScheduleShots(gallery);
    tarne::shots::takeWrapUpShots(gallery);
    return gallery.isComplete() ? 0 : 1;
}
