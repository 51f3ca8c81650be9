#include "EventLoop.h"
#include "FixedClock.h"
#include "FreedesktopUserNotificationCenter.h"
#include "PrivateBus.h"
#include "QtRunLoop.h"
#include "RecordingLog.h"
#include "ScheduleViewModel.h"
#include "StoredKeys.h"
#include "StoredUserDefaults.h"
#include "TestMain.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

// The schedule over what it stands on in the program: the notification daemon on a bus, the run
// loop of Qt's event loop, and the store's file. Time alone is the test's.

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const QString service = u"org.freedesktop.Notifications"_s;

class AReminder : public testing::Test {
protected:
    AReminder() { open(); }

    void startDaemon(const QString &capabilities = u"body"_s) {
        m_daemon = MockService::fromTemplate(m_bus, u"notification_daemon"_s, service,
                                             uR"({"capabilities": "%1"})"_s.arg(capabilities));
    }
    /// The program's parts from the store up, as a launch makes them.
    void open() {
        m_defaults = std::make_unique<StoredUserDefaults>(
            m_folder.path(),
            StoredUserDefaults::Keys{.restored = {keys::scheduledGoals}, .passing = {}}, m_clock,
            m_runLoop);
        m_center = std::make_unique<FreedesktopUserNotificationCenter>(
            m_connection, m_clock, [this] { return m_calendar; });
    }
    ScheduleViewModel &schedule() {
        if (!m_schedule)
            m_schedule = std::make_unique<ScheduleViewModel>(SchedulePlatform{
                m_clock, m_runLoop, m_log, *m_defaults, *m_center, [this] { return m_calendar; }});
        return *m_schedule;
    }
    /// Ends the program and starts it again.
    void relaunch() {
        m_schedule.reset();
        m_center.reset();
        m_defaults.reset();
        open();
    }

    Date at(int month, int day, int hour, int minute = 0) const {
        return m_calendar.date({2026, month, day, hour, minute, 0}).value();
    }
    ScheduledGoal add(Date start, const QString &text = u"Write"_s) {
        schedule().setSelectedDate(start);
        schedule().setSelectedTime(start);
        schedule().setGoalText(text);
        schedule().addGoal();
        return schedule().scheduledGoals().back();
    }
    ScheduledGoal addAccepted(Date start, const QString &text = u"Write"_s) {
        add(start, text);
        EXPECT_TRUE(serveUntil([&] { return isAccepted(); }));
        return schedule().scheduledGoals().back();
    }
    bool isAccepted() { return schedule().scheduledGoals().back().notificationScheduled; }

    /// The centre looks at the clock, as it does when its alarm rings.
    void arriveAt(Date moment) {
        m_clock.moment = moment;
        m_center->removePendingNotificationRequests({});
    }
    /// The bodies of the notifications that the daemon has got, after what is under way.
    QStringList shownBodies() {
        const qsizetype count = m_daemon->calls(u"Notify"_s).size();
        m_center->add({u"marker"_s, {u"marker"_s, u"marker"_s}, std::nullopt}, {});
        EXPECT_TRUE(serveUntil([&] {
            const auto calls = m_daemon->calls(u"Notify"_s);
            return calls.size() > count && calls.constLast().at(4) == u"marker"_s;
        }));
        QStringList bodies;
        for (const QVariantList &call : m_daemon->calls(u"Notify"_s)) {
            if (call.at(4) != u"marker"_s)
                bodies += call.at(4).toString();
        }
        return bodies;
    }

    FixedClock m_clock;
    Calendar m_calendar{QTimeZone("Europe/Berlin"), QLocale(u"en_US"_s)};
    QTemporaryDir m_folder;
    QtRunLoop m_runLoop;
    RecordingLog m_log;
    PrivateBus m_bus;
    QDBusConnection m_connection = m_bus.connect();
    std::unique_ptr<MockService> m_daemon;
    std::unique_ptr<StoredUserDefaults> m_defaults;
    std::unique_ptr<FreedesktopUserNotificationCenter> m_center;
    std::unique_ptr<ScheduleViewModel> m_schedule;
};

const QString writeStarts = u"Your scheduled focus session 'Write' starts in 1 hour"_s;

TEST_F(AReminder, IsNotedWhenItIsAcceptedAndStillSoAtTheNextLaunch) {
    startDaemon();
    const ScheduledGoal goal = addAccepted(at(3, 5, 9));
    relaunch();
    EXPECT_THAT(schedule().scheduledGoals(), ElementsAre(goal));
    EXPECT_TRUE(isAccepted());
    EXPECT_THAT(m_log.lines(), IsEmpty());
}

TEST_F(AReminder, AppearsOneHourAheadAndNotBefore) {
    startDaemon();
    addAccepted(at(3, 5, 9));
    arriveAt(at(3, 5, 8) - 1.0);
    EXPECT_THAT(shownBodies(), IsEmpty());
    arriveAt(at(3, 5, 8));
    EXPECT_THAT(shownBodies(), ElementsAre(writeStarts));
    EXPECT_EQ(m_daemon->calls(u"Notify"_s).at(1).at(3), u"Focus Session Reminder"_s);
}

TEST_F(AReminder, OfAGoalInLessThanAnHourIsAcceptedAndNeverAppears) {
    startDaemon();
    addAccepted(m_clock.moment + 30 * 60.0);
    arriveAt(m_clock.moment + 3600.0);
    EXPECT_THAT(shownBodies(), IsEmpty());
}

TEST_F(AReminder, OfACompletedGoalAppearsAllTheSame) {
    startDaemon();
    schedule().toggleGoalCompletion(addAccepted(at(3, 5, 9)));
    arriveAt(at(3, 5, 8));
    EXPECT_THAT(shownBodies(), ElementsAre(writeStarts));
}

TEST_F(AReminder, OfADeletedGoalNeverAppears) {
    startDaemon();
    schedule().deleteGoal(addAccepted(at(3, 5, 9)));
    addAccepted(at(3, 5, 9), u"Kept"_s);
    arriveAt(at(3, 5, 8));
    EXPECT_THAT(shownBodies(),
                ElementsAre(u"Your scheduled focus session 'Kept' starts in 1 hour"_s));
}

TEST_F(AReminder, AcceptedAfterItsGoalWasDeletedChangesNothing) {
    startDaemon();
    schedule().deleteGoal(add(at(3, 5, 9)));
    addAccepted(at(3, 6, 9), u"Kept"_s);
    relaunch();
    EXPECT_THAT(schedule().scheduledGoals(), SizeIs(1));
    EXPECT_EQ(schedule().scheduledGoals().front().goal, u"Kept"_s);
}

TEST_F(AReminder, KeepsItsClockTimeWhenTheClocksChangeBeforeItsMoment) {
    startDaemon();
    addAccepted(at(3, 30, 9)); // In summer time, planned in winter time.
    arriveAt(Date::fromUnixSeconds(1774850399.0));
    EXPECT_THAT(shownBodies(), IsEmpty());
    arriveAt(Date::fromUnixSeconds(1774850400.0)); // 2026-03-30T06:00:00 UTC
    EXPECT_THAT(shownBodies(), ElementsAre(writeStarts));
}

TEST_F(AReminder, OfAStartThatIsSkippedComesOneRealHourAheadOfTheTimeAfterTheGap) {
    startDaemon();
    schedule().setSelectedTime(at(3, 2, 2, 30));
    schedule().setSelectedDate(at(3, 29, 12));
    schedule().setGoalText(u"Write"_s);
    schedule().addGoal();
    EXPECT_TRUE(serveUntil([&] { return isAccepted(); }));
    const Date start = at(3, 29, 3, 30);
    arriveAt(start - 3601.0);
    EXPECT_THAT(shownBodies(), IsEmpty());
    arriveAt(start - 3600.0);
    EXPECT_THAT(shownBodies(), ElementsAre(writeStarts));
}

TEST_F(AReminder, OfAStartInAnHourThatComesTwiceComesOneHourAheadOfTheFirst) {
    startDaemon();
    schedule().setSelectedTime(at(3, 2, 2, 30));
    schedule().setSelectedDate(at(10, 25, 12));
    schedule().setGoalText(u"Write"_s);
    schedule().addGoal();
    EXPECT_TRUE(serveUntil([&] { return isAccepted(); }));
    arriveAt(at(10, 25, 1, 30) - 1.0);
    EXPECT_THAT(shownBodies(), IsEmpty());
    arriveAt(at(10, 25, 1, 30));
    EXPECT_THAT(shownBodies(), ElementsAre(writeStarts));
}

TEST_F(AReminder, KeepsItsClockTimeWhenTheZoneChangesUnderTheProgram) {
    startDaemon();
    addAccepted(at(3, 5, 9));
    m_calendar = Calendar(QTimeZone("America/New_York"), QLocale(u"en_US"_s));
    arriveAt(at(3, 5, 8) - 1.0);
    EXPECT_THAT(shownBodies(), IsEmpty());
    arriveAt(at(3, 5, 8));
    EXPECT_THAT(shownBodies(), ElementsAre(writeStarts));
}

TEST_F(AReminder, ShowsAGoalsTextAsPlainTextAndWhole) {
    startDaemon(u"body body-markup"_s);
    addAccepted(at(3, 5, 9), u"<b>\"it\"</b>\n"_s + u"ä"_s.repeated(100'000));
    arriveAt(at(3, 5, 8));
    EXPECT_THAT(shownBodies(),
                ElementsAre(u"Your scheduled focus session '&lt;b&gt;&quot;it&quot;&lt;/b&gt;\n"_s +
                            u"ä"_s.repeated(100'000) + u"' starts in 1 hour"_s));
}

TEST_F(AReminder, OfYearsFarAwayIsAccepted) {
    startDaemon();
    for (const int year : {1, 9999}) {
        addAccepted(m_calendar.date({year, 6, 15, 9, 0, 0}).value());
        EXPECT_TRUE(isAccepted()) << year;
    }
    relaunch();
    EXPECT_THAT(schedule().scheduledGoals(), SizeIs(2));
}

TEST_F(AReminder, ThatTheDaemonRefusesIsMissedInSilenceOnStandardOutput) {
    const ExpectedWarning warning(u"was not taken"_s);
    m_daemon = MockService::bare(m_bus, service, u"/org/freedesktop/Notifications"_s, service);
    m_daemon->addMethod(u"GetCapabilities"_s, {}, u"as"_s, u"ret = []"_s);
    m_daemon->addMethod(u"Notify"_s, u"susssasa{sv}i"_s, u"u"_s,
                        u"raise dbus.exceptions.DBusException('no', name='org.example.No')"_s);
    addAccepted(at(3, 5, 9));
    arriveAt(at(3, 5, 8));
    EXPECT_TRUE(m_daemon->waitForCalls(u"Notify"_s, 1));
    // The refusal is on its way back; a goal is added and accepted meanwhile.
    addAccepted(at(3, 6, 9));
    EXPECT_TRUE(serveUntil([&] { return warning.isMet(); }));
    EXPECT_THAT(m_log.lines(), IsEmpty());
}

TEST_F(AReminder, IsAcceptedWhileTheDaemonHangs) {
    startDaemon();
    schedule();
    m_daemon->hang();
    EXPECT_LT(timeOf([&] { add(at(3, 5, 9)); }), 100ms);
    EXPECT_TRUE(serveUntil([&] { return isAccepted(); }, 1s));
    m_daemon->resume();
    arriveAt(at(3, 5, 8));
    EXPECT_THAT(shownBodies(), ElementsAre(writeStarts));
}

TEST_F(AReminder, ThatFindsNoDaemonIsShownByTheNextOne) {
    const ExpectedWarning warning(u"waits for a daemon"_s);
    startDaemon();
    addAccepted(at(3, 5, 9));
    m_daemon.reset();
    arriveAt(at(3, 5, 8));
    EXPECT_TRUE(serveUntil([&] { return warning.isMet(); }));
    startDaemon();
    EXPECT_TRUE(m_daemon->waitForCalls(u"Notify"_s, 1));
    EXPECT_THAT(shownBodies(), ElementsAre(writeStarts));
}

TEST_F(AReminder, WithoutABusCostsALineAndTheGoalIsKept) {
    m_bus.stop();
    EXPECT_TRUE(serveUntil([&] { return !m_connection.isConnected(); }));
    add(at(3, 5, 9));
    EXPECT_TRUE(serveUntil([&] { return m_log.lines().size() == 2; }));
    EXPECT_THAT(m_log.lines(),
                ElementsAre(u"Notification permission error: There is no session bus."_s,
                            u"Error scheduling notification: There is no session bus."_s));
    relaunch();
    EXPECT_THAT(schedule().scheduledGoals(), SizeIs(1));
    EXPECT_FALSE(isAccepted());
    EXPECT_TRUE(serveUntil([&] { return m_log.lines().size() == 3; })); // Asked for anew.
}

} // namespace
} // namespace tarne::test
