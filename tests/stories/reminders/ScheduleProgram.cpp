// The schedule's screen over the notifications that TARNE has, to be ended by a kill.
//
//   schedule_program ADDRESS GOAL SECONDS   shows the screen, with the bus of that address, and
//   adds
//                                           a goal that starts so many seconds after 1970
//
// Prints "accepted" when the goal's reminder was accepted.

#include "ManualTime.h"
#include "MemoryDefaults.h"
#include "NotifierUserNotificationCenter.h"
#include "QtRunLoop.h"
#include "RecordingLog.h"
#include "ScheduleView.h"
#include "SystemClock.h"

#include <QDBusConnection>
#include <QGuiApplication>
#include <QProperty>
#include <QQmlEngine>
#include <QQuickView>
#include <QTimer>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace tarne;

int main(int argc, char **argv) {
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 4)
        return 2;
    QDBusConnection bus = QDBusConnection::connectToBus(arguments[1], u"schedule"_s);
    if (!bus.registerService(u"com.tarne.app"_s))
        return 1;
    SystemClock clock;
    QtRunLoop runLoop;
    test::RecordingLog log;
    test::MemoryDefaults defaults;
    NotifierUserNotificationCenter center(bus, clock, &Calendar::current);
    QProperty<bool> isPresented{true};
    ScheduleView view({clock, runLoop, log, defaults, center, &Calendar::current},
                      QBindable<bool>(&isPresented));

    QQuickView window;
    window.engine()->addImportPath(u"qrc:/qt/qml"_s);
    window.setInitialProperties({{u"view"_s, QVariant::fromValue(&view)}});
    window.setSource(QUrl(u"qrc:/qt/qml/TARNE/Views/ScheduleScreen.qml"_s));
    window.resize(900, 700);
    window.show();

    const Date start = Date::fromUnixSeconds(arguments[3].toDouble());
    ScheduleViewModel &controller = view.scheduleViewModel();
    view.openAddGoal();
    controller.setSelectedDate(start);
    controller.setSelectedTime(start);
    view.addGoalSheet()->setGoalText(arguments[2]);
    view.addGoalSheet()->scheduleGoal();
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        const auto &goals = controller.scheduledGoals();
        if (goals.empty() || !goals.back().notificationScheduled)
            return;
        std::puts("accepted");
        std::fflush(stdout);
        look.stop();
    });
    look.start(10ms);
    return QGuiApplication::exec();
}
