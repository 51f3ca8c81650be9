// A session controller on the real run loop and the real store, to be ended by a kill.
//
//   session_helper FOLDER GOAL SECONDS   goes on with the session that the store in FOLDER holds,
//   or
//                                        starts one of that goal and length
//
// Prints, one a line, with moments of the monotonic clock and of the wall clock:
//
//   restored MONOTONIC WALL REMAINING GOAL   what the controller has found, right after it was made
//   started MONOTONIC WALL                   the count-down's start, when it had found nothing
//   published MONOTONIC WALL                 each publication of the running session
//   alive MONOTONIC WALL                     ten times a second

#include "QtRunLoop.h"
#include "RecordingPlatform.h"
#include "SessionViewModel.h"
#include "StoredKeys.h"
#include "StoredUserDefaults.h"
#include "SystemClock.h"

#include <QCoreApplication>

#include <cstdio>
#include <ctime>
#include <tuple>

using namespace Qt::StringLiterals;
using namespace tarne;

namespace {

void tell(const char *what, double wallSeconds, const QByteArray &rest = {}) {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    std::printf("%s %ld.%09ld %.9f%s\n", what, static_cast<long>(now.tv_sec), now.tv_nsec,
                wallSeconds, rest.constData());
    std::fflush(stdout);
}

/// Hears of the publications: the controller logs each between its last key and the hand-over.
class PublicationLog final : public Log {
public:
    explicit PublicationLog(const UserDefaults &defaults) : m_defaults(defaults) {}

    void line(const QString &text) override {
        if (text.startsWith(u"📱 Session data updated: Active=1"))
            tell("published", m_defaults.doubleForKey(keys::lastUpdate));
    }

private:
    const UserDefaults &m_defaults;
};

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4)
        return 2;
    const SystemClock clock;
    QtRunLoop runLoop;
    StoredUserDefaults defaults(arguments[1],
                                {.restored = {keys::userPreferences, keys::sessionHistory},
                                 .passing = {keys::published.begin(), keys::published.end()}},
                                clock, runLoop);
    PublicationLog log(defaults);
    NotificationCenter notificationCenter;
    test::RecordingUserNotifications userNotifications;
    test::RecordingBackgroundActivities backgroundActivities;
    test::CountingHaptics haptics;
    SessionViewModel controller({.clock = clock,
                                 .runLoop = runLoop,
                                 .log = log,
                                 .defaults = defaults,
                                 .notificationCenter = notificationCenter,
                                 .userNotifications = userNotifications,
                                 .backgroundActivities = backgroundActivities,
                                 .haptics = haptics,
                                 .calendar = &Calendar::current});
    if (controller.isTimerActive()) {
        const QString found = u" %1 %2"_s.arg(controller.timeRemaining(), 0, 'f', 9)
                                  .arg(controller.currentSession()->goal);
        tell("restored", clock.now().secondsSince1970(), found.toUtf8());
    } else {
        controller.startSession(controller.createSession(arguments[2], arguments[3].toDouble()));
        tell("started", defaults.dateForKey(keys::timerStartTime)->secondsSince1970());
    }
    constexpr RunLoop::Seconds heartbeat{0.1};
    std::ignore = runLoop.scheduleRepeating(heartbeat, [] { tell("alive", 0.0); });
    return QCoreApplication::exec();
}
