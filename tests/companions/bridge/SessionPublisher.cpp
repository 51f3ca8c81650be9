// TARNE as its store and its lock show it, without a window: two session controllers on the real
// run loop and the real store.
//
//   session_publisher FOLDER PHASE   makes the controllers PHASE milliseconds apart, the one that
//                                    knows of no session first; restores what the store in FOLDER
//                                    holds, and prints "ready"
//
// It obeys the lines on standard input, and ends with it: "start SECONDS GOALS", "pause", "resume",
// "end", "block MILLISECONDS".

#include "DefaultsLock.h"
#include "QtRunLoop.h"
#include "RecordingPlatform.h"
#include "SessionViewModel.h"
#include "StoredKeys.h"
#include "StoredUserDefaults.h"
#include "SystemClock.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>
#include <optional>
#include <thread>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tarne;

namespace {

class SilentLog final : public Log {
public:
    void line(const QString &) override {}
};

void obey(SessionViewModel &controller, const QString &line) {
    const QString word = line.section(u' ', 0, 0);
    if (word == "start"_L1)
        controller.startSession(
            controller.createSession(line.section(u' ', 2), line.section(u' ', 1, 1).toDouble()));
    else if (word == "pause"_L1)
        controller.pauseTimer();
    else if (word == "resume"_L1)
        controller.resumeTimer();
    else if (word == "end"_L1)
        controller.endSession(std::nullopt, true);
    else if (word == "block"_L1)
        std::this_thread::sleep_for(std::chrono::milliseconds(line.section(u' ', 1).toInt()));
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3)
        return 2;
    DefaultsLock lock(arguments[1]);
    if (lock.take() != DefaultsLock::Holder::Us)
        return 3;
    const SystemClock clock;
    QtRunLoop runLoop;
    StoredUserDefaults defaults(arguments[1],
                                {.restored = {keys::userPreferences, keys::sessionHistory},
                                 .passing = {keys::published.begin(), keys::published.end()}},
                                clock, runLoop);
    SilentLog log;
    NotificationCenter notificationCenter;
    test::RecordingUserNotifications userNotifications;
    test::RecordingBackgroundActivities backgroundActivities;
    test::CountingHaptics haptics;
    const SessionPlatform platform{.clock = clock,
                                   .runLoop = runLoop,
                                   .log = log,
                                   .defaults = defaults,
                                   .notificationCenter = notificationCenter,
                                   .userNotifications = userNotifications,
                                   .backgroundActivities = backgroundActivities,
                                   .haptics = haptics,
                                   .calendar = &Calendar::current};
    const SessionViewModel uncalled(platform);
    std::optional<SessionViewModel> controller;
    QByteArray received;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
        char chunk[256];
        const ssize_t size = ::read(STDIN_FILENO, chunk, sizeof chunk);
        if (size <= 0) {
            QCoreApplication::quit();
            return;
        }
        received.append(chunk, size);
        for (qsizetype end = 0; (end = received.indexOf('\n')) >= 0; received.remove(0, end + 1))
            obey(*controller, QString::fromUtf8(received.first(end)));
    });
    runLoop.asyncAfter(RunLoop::Seconds(arguments[2].toDouble() / 1000.0), [&] {
        controller.emplace(platform);
        std::puts("ready");
        std::fflush(stdout);
    });
    return QCoreApplication::exec();
}
