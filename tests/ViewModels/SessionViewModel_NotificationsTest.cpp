#include "SessionFixture.h"

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using testing::ElementsAre;

class SessionNotifications : public test::SessionTest {
protected:
    /// As the schedule adds one.
    void addReminder() {
        userNotifications.add(
            {.identifier = u"reminder"_s, .content = {}, .trigger = DateComponents{}}, {});
    }
};

TEST_F(SessionNotifications, APauseLeavesTheScheduledNotificationPending) {
    start(u"Review"_s, 600);
    controller().pauseTimer();
    pass(10);
    EXPECT_EQ(userNotifications.pending.size(), 1u);
}

TEST_F(SessionNotifications, TheScheduledNotificationTellsTheEndInCalendarComponents) {
    start(u"Review"_s, 5400);
    ASSERT_EQ(userNotifications.pending.size(), 1u);
    const NotificationRequest &request = userNotifications.pending[0];
    EXPECT_EQ(request.identifier, u"timer-completion"_s);
    EXPECT_EQ(request.content.title, u"Session Complete! 🎉"_s);
    EXPECT_EQ(request.content.body, u"Great job! Your focus session is complete."_s);
    EXPECT_EQ(request.trigger, (DateComponents{2026, 3, 2, 13, 30, 0}));
}

TEST_F(SessionNotifications, TheScheduledNotificationTellsTheEndInTheUsersZoneToTheSecond) {
    SessionPlatform inKolkata = platform();
    inKolkata.calendar = [] { return Calendar(QTimeZone("Asia/Kolkata"), QLocale::c()); };
    SessionViewModel there(inKolkata);
    pass(7);
    there.startSession(there.createSession(u"Review"_s, 12 * 3600 - 0.5));
    ASSERT_EQ(userNotifications.pending.size(), 1u);
    EXPECT_EQ(userNotifications.pending[0].trigger, (DateComponents{2026, 3, 3, 5, 30, 6}));
}

TEST_F(SessionNotifications, SchedulingRemovesEveryPendingRequestFirst) {
    controller();
    addReminder();
    userNotifications.calls.clear();
    start(u"Review"_s, 300);
    EXPECT_EQ(userNotifications.pending.size(), 1u);
    EXPECT_EQ(userNotifications.calls.last(), u"add timer-completion"_s);
    EXPECT_EQ(userNotifications.calls[userNotifications.calls.size() - 2], u"removeAll"_s);
}

TEST_F(SessionNotifications, LogsANotificationThatCouldNotBeScheduled) {
    controller();
    log.takeLines();
    userNotifications.error = u"the bus is gone"_s;
    start(u"Review"_s, 300);
    EXPECT_THAT(log.takeLines(), ElementsAre(u"Failed to schedule notification: the bus is gone"_s,
                                             u"📱 Starting new session: Review"_s));
}

TEST_F(SessionNotifications, AnAnswerOfTheNotificationsAfterTheControllersEndOnlyLogs) {
    userNotifications.answersLate = true;
    start(u"Review"_s, 300);
    crash();
    log.takeLines();
    for (const auto &done : userNotifications.lateCompletions)
        done(u"too late"_s);
    EXPECT_THAT(log.takeLines(), ElementsAre(u"Failed to schedule notification: too late"_s));
}

TEST_F(SessionNotifications, TheBackgroundActivityLastsAsLongAsTheCountdown) {
    start(u"Review"_s, 300);
    ASSERT_EQ(activities.activities.size(), 1u);
    const auto &activity = *activities.activities[0];
    EXPECT_EQ(activity.identifier, u"com.tarne.timer"_s);
    EXPECT_TRUE(activity.scheduled);
    pass(299);
    EXPECT_FALSE(activity.finished);
    pass(1);
    EXPECT_TRUE(activity.finished);
    EXPECT_FALSE(activity.invalidated);
}

TEST_F(SessionNotifications, AreSentWhateverThePreferencesSay) {
    UserPreferences quiet;
    quiet.notificationsEnabled = false;
    quiet.soundEnabled = false;
    controller().updatePreferences(quiet);
    start(u"Review"_s, 300);
    EXPECT_EQ(userNotifications.pending.size(), 1u);
    pass(300);
    ASSERT_EQ(userNotifications.added.size(), 2u);
    EXPECT_EQ(userNotifications.added[0].content.title, u"Session Complete! 🎉"_s);
    EXPECT_EQ(userNotifications.added[1].content.title, u"Session Complete"_s);
}

TEST_F(SessionNotifications, StoppingTheCountdownTakesEveryPendingRequestWithIt) {
    start(u"Review"_s, 300);
    addReminder();
    controller().stopTimer();
    EXPECT_TRUE(userNotifications.pending.empty());
}

TEST_F(SessionNotifications, EndingTheSessionTakesEveryPendingRequestWithIt) {
    start(u"Review"_s, 300);
    addReminder();
    controller().endSession(std::nullopt, true);
    EXPECT_TRUE(userNotifications.pending.empty());
}

TEST_F(SessionNotifications, ASecondStartReplacesTheRequestAndTheActivityOfTheFirst) {
    start(u"First"_s, 300);
    start(u"Second"_s, 600);
    ASSERT_EQ(activities.activities.size(), 2u);
    EXPECT_TRUE(activities.activities[0]->invalidated);
    EXPECT_FALSE(activities.activities[1]->invalidated);
    ASSERT_EQ(userNotifications.pending.size(), 1u);
    EXPECT_EQ(userNotifications.pending[0].trigger, (DateComponents{2026, 3, 2, 12, 10, 0}));
}

} // namespace
} // namespace tarne::test
