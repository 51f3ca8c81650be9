// tarne-notifier: keeps TARNE's pending notifications and shows them at their moment, whether TARNE
// runs or not. The bus starts it when it is called, and the desktop at login; it ends when nothing
// is pending. docs/notifier.md tells how it is called.

#include "DBusService.h"
#include "DefaultsLock.h"
#include "Notifier.h"
#include "NotifierInterface.h"
#include "NotifierService.h"
#include "RequestFile.h"
#include "StandardDescriptors.h"
#include "SystemClock.h"
#include "TimeZoneWatch.h"
#include "UnixSignals.h"
#include "WallClockAlarm.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDeadlineTimer>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <thread>

#include <malloc.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace tarne;
using namespace tarne::notifier;

namespace {

/// How long the call may take for whose sake the bus has started the program.
constexpr auto firstCallPatience = 1s;

/// A predecessor that is about to end still has the file.
constexpr auto predecessorPatience = 5s;

/// The program waits for weeks, and the peak of a busy moment is not to stay with it: one heap for
/// all threads, so that what they free lies together, and free memory back to the system. Qt's own
/// event loop does without another library's.
void keepMemorySmall() {
    qputenv("QT_NO_GLIB", "1");
    mallopt(M_ARENA_MAX, 1);
    mallopt(M_TRIM_THRESHOLD, 64 * 1024);
    mallopt(M_MMAP_THRESHOLD, 64 * 1024);
}

int fail(const char *reason) {
    std::fprintf(stderr, "tarne-notifier: %s\n", reason);
    return EXIT_FAILURE;
}

bool takeFile(DefaultsLock &lock) {
    const QDeadlineTimer deadline(predecessorPatience);
    while (lock.take() != DefaultsLock::Holder::Us) {
        if (deadline.hasExpired())
            return false;
        std::this_thread::sleep_for(20ms);
    }
    return true;
}

} // namespace

int main(int argc, char **argv) {
    keepMemorySmall();
    openStandardDescriptors();
    // With what the user plans in it.
    disableCoreDumps();
    argc = std::min(argc, 1); // There are no options.
    const QCoreApplication application(argc, argv);
    const UnixSignals signalsOfTermination([] { QCoreApplication::quit(); });

    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return fail("there is no session bus");
    if (bus.interface()->isServiceRegistered(service))
        return EXIT_SUCCESS; // Another one does the work.
    const QString folder = RequestFile::standardFolder();
    DefaultsLock lock(RequestFile::filesIn(folder));
    if (!takeFile(lock))
        return fail("another notifier, on another bus, has the file of pending notifications");
    const SystemClock clock;
    const auto file = RequestFile::open(folder, clock.now());
    if (!file)
        return EXIT_FAILURE;

    Notifier notifier(*file, bus, clock, &Calendar::current);
    NotifierService calls(bus, notifier);
    WallClockAlarm alarm;
    const TimeZoneWatch timeZone;
    DBusService app(bus, {clientService, u"/com/tarne/app"_s, u"org.freedesktop.Application"_s});
    QObject::connect(&notifier, &Notifier::nextMomentChanged, &alarm,
                     [&](std::optional<Date> moment) {
                         if (moment)
                             alarm.set(*moment);
                         else
                             alarm.clear();
                     });
    QObject::connect(&alarm, &WallClockAlarm::rang, &notifier, &Notifier::review);
    QObject::connect(&timeZone, &TimeZoneWatch::changed, &notifier, &Notifier::review);
    // TARNE may take longer to come up than an answer is waited for; nothing hangs on the answer.
    QObject::connect(&notifier, &Notifier::activated, &app, [&](const QString &token) {
        const QVariantMap platformData{{u"activation-token"_s, token},
                                       {u"desktop-startup-id"_s, token}};
        app.call(u"ActivateAction"_s,
                 {u"notice"_s, QVariantList(), token.isEmpty() ? QVariantMap() : platformData},
                 &app, [](const QDBusMessage &) {});
    });

    // A bus that ends has been the user's session.
    bus.connect(QString(), u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
                u"Disconnected"_s, QCoreApplication::instance(), SLOT(quit()));
    if (!calls.takeName())
        return EXIT_SUCCESS; // Another one was faster.

    QTimer end;
    end.setSingleShot(true);
    end.setInterval(0);
    const auto endSoonIfIdle = [&] {
        if (notifier.isIdle() && !calls.hasCalls() && !end.isActive())
            end.start();
    };
    QObject::connect(&end, &QTimer::timeout, [&] {
        end.setInterval(0);
        if (!notifier.isIdle() || calls.hasCalls())
            return;
        // Calls that are on their way to this process are answered by it, and the next one starts
        // another process. What they have left in the file is that one's, if it is there already.
        calls.giveNameBack();
        if ((notifier.isIdle() && !calls.hasCalls()) || !calls.takeName())
            QCoreApplication::quit();
    });
    if (qEnvironmentVariableIsSet("DBUS_STARTER_BUS_TYPE"))
        end.setInterval(firstCallPatience);
    QObject::connect(&notifier, &Notifier::settled, endSoonIfIdle);
    QObject::connect(&calls, &NotifierService::answered, endSoonIfIdle);
    QObject::connect(&calls, &NotifierService::answered, [] { malloc_trim(0); });
    notifier.review();
    return QCoreApplication::exec();
}
