#include "SessionFixture.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class SessionLifecycle : public test::SessionTest {};

TEST_F(SessionLifecycle, CreatesASessionFromAGoalLine) {
    UserPreferences preferences;
    preferences.defaultBlockedApps = {u"Mail"_s};
    preferences.defaultBlockedWebsites = {u"news.example"_s};
    controller().updatePreferences(preferences);
    const FocusSession session = controller().createSession(u"Write report, Review, "_s, 300);
    EXPECT_EQ(session.goal, u"Write report, Review, "_s);
    EXPECT_EQ(texts(session.goals), (QStringList{u"Write report"_s, u"Review"_s}));
    EXPECT_EQ(session.duration, 300.0);
    EXPECT_EQ(session.startTime, time.now());
    EXPECT_FALSE(session.endTime);
    EXPECT_FALSE(session.reflection);
    EXPECT_EQ(session.blockedApps, QStringList{u"Mail"_s});
    EXPECT_EQ(session.blockedWebsites, QStringList{u"news.example"_s});
    EXPECT_FALSE(session.completed);
    EXPECT_EQ(controller().loadLastGoal(), u"Write report, Review, "_s);
}

TEST_F(SessionLifecycle, CreatingASessionDoesNotStartIt) {
    const FocusSession first = controller().createSession(u"a"_s, 300);
    const FocusSession second = controller().createSession(u"a"_s, 300);
    EXPECT_FALSE(controller().currentSession());
    EXPECT_FALSE(controller().isTimerActive());
    EXPECT_NE(first.id, second.id);
}

TEST_F(SessionLifecycle, StartingRunsTheCountdownFromNow) {
    const FocusSession session = controller().createSession(u"Review"_s, 300);
    pass(20);
    controller().startSession(session);
    EXPECT_EQ(controller().currentSession()->id, session.id);
    EXPECT_EQ(controller().timeRemaining(), 300.0);
    EXPECT_EQ(controller().progress(), 1.0);
    EXPECT_TRUE(controller().isTimerActive());
    EXPECT_EQ(defaults.dateForKey(keys::timerStartTime), time.now())
        << "the count-down's start is not the session's";
}

TEST_F(SessionLifecycle, StartingLogsTheGoalLast) {
    controller();
    log.takeLines();
    start(u"Review"_s, 300);
    EXPECT_THAT(log.takeLines(), ElementsAre(u"📱 Starting new session: Review"_s));
}

TEST_F(SessionLifecycle, StartingReplacesARunningSessionWithoutSavingIt) {
    start(u"First"_s, 300);
    pass(100);
    start(u"Second"_s, 600);
    EXPECT_EQ(controller().currentSession()->goal, u"Second"_s);
    EXPECT_EQ(controller().timeRemaining(), 600.0);
    EXPECT_TRUE(history().empty());
    pass(250);
    EXPECT_FALSE(controller().isTimerComplete()) << "the first session's timer is gone";
    EXPECT_EQ(defaults.stringForKey(keys::timerSessionGoal), u"Second"_s);
}

TEST_F(SessionLifecycle, TheTickTakesTheTimeFromTheWallClock) {
    start(u"Review"_s, 300);
    pass(1);
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 299.0);
    EXPECT_DOUBLE_EQ(controller().progress(), 299.0 / 300.0);
    time.setWallClock(time.now() + 100);
    pass(1);
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 198.0);
}

TEST_F(SessionLifecycle, AClockSetBackByADayShowsMoreThanTheLengthAndLosesNothing) {
    start(u"Review"_s, 300);
    pass(10);
    time.setWallClock(time.now() - 86400);
    pass(1);
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 300 - 11 + 86400);
    EXPECT_GT(controller().progress(), 1.0);
    time.setWallClock(time.now() + 86400);
    pass(1);
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 288.0);
}

TEST_F(SessionLifecycle, AClockSetForwardByADayCompletesTheSession) {
    start(u"Review"_s, 300);
    time.setWallClock(time.now() + 86400);
    pass(1);
    EXPECT_TRUE(controller().isTimerComplete());
    EXPECT_EQ(history().size(), 1u);
}

TEST_F(SessionLifecycle, ABusyMainThreadCostsNoTime) {
    start(u"Review"_s, 300);
    time.block(Seconds(42.5));
    pass(1);
    EXPECT_NEAR(controller().timeRemaining(), 257, 1);
}

TEST_F(SessionLifecycle, PausingStopsTheDisplayAndNotTheClock) {
    start(u"Review"_s, 600);
    pass(300);
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 300.0);
    controller().pauseTimer();
    pass(40);
    EXPECT_FALSE(controller().isTimerActive());
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 300.0);
    EXPECT_DOUBLE_EQ(controller().progress(), 0.5);
    controller().resumeTimer();
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 300.0) << "until the next tick";
    pass(1);
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 259.0);
}

TEST_F(SessionLifecycle, APausedTimerWritesNoTimerKeysAndStaysStoredAsActive) {
    start(u"Review"_s, 600);
    pass(10);
    controller().pauseTimer();
    defaults.takeWrites();
    pass(10);
    EXPECT_THAT(defaults.takeWrites(), Not(Contains(QString(keys::timerStartTime))));
    EXPECT_TRUE(defaults.boolForKey(keys::timerIsActive));
}

TEST_F(SessionLifecycle, APauseLeavesTheScheduledNotificationPending) {
    start(u"Review"_s, 600);
    controller().pauseTimer();
    pass(10);
    EXPECT_EQ(userNotifications.pending.size(), 1u);
}

TEST_F(SessionLifecycle, APauseThatOutlastsTheTimeCompletesAtTheTickAfterTheResumption) {
    start(u"Review"_s, 300);
    controller().pauseTimer();
    pass(400);
    EXPECT_FALSE(controller().isTimerComplete());
    controller().resumeTimer();
    pass(1);
    EXPECT_TRUE(controller().isTimerComplete());
    EXPECT_EQ(history().size(), 1u);
}

TEST_F(SessionLifecycle, PausingAndResumingAnIdleControllerOnlySetsTheFlag) {
    controller().resumeTimer();
    EXPECT_TRUE(controller().isTimerActive());
    pass(3);
    EXPECT_EQ(controller().timeRemaining(), 0.0);
    controller().pauseTimer();
    EXPECT_FALSE(controller().isTimerActive());
}

TEST_F(SessionLifecycle, RunningOutCompletesTheSession) {
    start(u"Write report, Review"_s, 300);
    const QUuid id = controller().currentSession()->id;
    const Date created = controller().currentSession()->startTime;
    pass(300);
    EXPECT_FALSE(controller().isTimerActive());
    EXPECT_TRUE(controller().isTimerComplete());
    EXPECT_EQ(controller().progress(), 0.0);
    EXPECT_EQ(controller().timeRemaining(), 0.0);
    const FocusSession &session = *controller().currentSession();
    EXPECT_EQ(session.id, id);
    EXPECT_EQ(session.goal, u"Write report, Review"_s);
    EXPECT_EQ(session.startTime, created);
    EXPECT_EQ(session.endTime, time.now());
    EXPECT_EQ(session.duration, 300.0);
    EXPECT_FALSE(session.reflection);
    EXPECT_TRUE(session.completed);
}

TEST_F(SessionLifecycle, RunningOutSavesAnEntryWithEmptyTextsAndLogsIt) {
    start(u"Review"_s, 300);
    pass(299);
    log.takeLines();
    pass(1);
    EXPECT_THAT(
        log.takeLines(),
        ElementsAre(u"📱 Session data updated: Active=1, Goals=Review, TimeRemaining=1.0"_s,
                    u"📱 Added new session to history: Review"_s,
                    u"📱 Timer completed - session automatically saved to history: Review"_s));
    ASSERT_EQ(history().size(), 1u);
    EXPECT_EQ(history()[0].sessionDate, time.now());
    EXPECT_EQ(history()[0].duration, 300.0);
    EXPECT_EQ(history()[0].reflection, QString());
}

TEST_F(SessionLifecycle, RunningOutDropsTheReflectionAndTakesTheCountdownsLength) {
    FocusSession session = controller().createSession(u"Review"_s, 300);
    session.reflection = u"early thoughts"_s;
    controller().startSession(session);
    controller().startTimer(120);
    pass(120);
    EXPECT_EQ(controller().currentSession()->duration, 120.0);
    EXPECT_FALSE(controller().currentSession()->reflection);
}

TEST_F(SessionLifecycle, RunningOutLeavesTheKeysTheActivityAndTheScheduledNotification) {
    start(u"Review"_s, 300);
    const auto scheduled = userNotifications.pending;
    pass(300);
    EXPECT_TRUE(defaults.dateForKey(keys::timerStartTime));
    EXPECT_TRUE(defaults.boolForKey(keys::timerIsActive)) << "as the last tick saved them";
    EXPECT_EQ(userNotifications.pending, scheduled);
    EXPECT_FALSE(activities.activities[0]->invalidated);
}

TEST_F(SessionLifecycle, RunningOutNotifiesAtOnceUnderANewIdentifier) {
    start(u"Review"_s, 300);
    pass(300);
    const NotificationRequest &notice = userNotifications.added.back();
    EXPECT_EQ(notice.content.title, u"Session Complete"_s);
    EXPECT_EQ(notice.content.body, u"Great job! Your session is complete."_s);
    EXPECT_FALSE(notice.trigger);
    EXPECT_FALSE(QUuid::fromString(notice.identifier).isNull());
    EXPECT_EQ(notice.identifier, notice.identifier.toUpper());
}

TEST_F(SessionLifecycle, RunningOutStopsTheTick) {
    start(u"Review"_s, 300);
    const std::size_t timers = time.timerCount();
    pass(300);
    EXPECT_EQ(time.timerCount(), timers - 1);
}

TEST_F(SessionLifecycle, SleepingAcrossTheEndCompletesAtTheFirstTickAfterwards) {
    start(u"Review"_s, 300);
    pass(100);
    time.sleep(Seconds(5000));
    pass(1);
    EXPECT_TRUE(controller().isTimerComplete());
    EXPECT_EQ(controller().currentSession()->endTime, time.now()) << "not the planned end";
}

TEST_F(SessionLifecycle, ALengthOfZeroRunsOutAtTheFirstTick) {
    start(u"Review"_s, 0);
    EXPECT_TRUE(controller().isTimerActive());
    std::vector<double> seen;
    QObject::connect(&controller(), &SessionViewModel::progressChanged,
                     [&](double progress) { seen.push_back(progress); });
    pass(1);
    EXPECT_TRUE(controller().isTimerComplete());
    EXPECT_EQ(controller().timeRemaining(), 0.0);
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_TRUE(std::isnan(seen[0])) << "0 of 0 is no number, for an instant";
    EXPECT_EQ(seen[1], 0.0);
}

TEST_F(SessionLifecycle, ANegativeLengthRunsOutAtTheFirstTick) {
    start(u"Review"_s, -50);
    pass(1);
    EXPECT_TRUE(controller().isTimerComplete());
}

TEST_F(SessionLifecycle, ALengthThatIsNoNumberRunsOutAtTheFirstTickAndKeepsTheHistory) {
    start(u"Review"_s, 300);
    pass(300);
    start(u"Other"_s, std::numeric_limits<double>::quiet_NaN());
    pass(1);
    EXPECT_TRUE(controller().isTimerComplete());
    EXPECT_EQ(history().size(), 1u) << "a record that no document holds is not stored";
}

TEST_F(SessionLifecycle, TheScheduledNotificationTellsTheEndInCalendarComponents) {
    start(u"Review"_s, 5400);
    ASSERT_EQ(userNotifications.pending.size(), 1u);
    const NotificationRequest &request = userNotifications.pending[0];
    EXPECT_EQ(request.identifier, u"timer-completion"_s);
    EXPECT_EQ(request.content.title, u"Session Complete! 🎉"_s);
    EXPECT_EQ(request.content.body, u"Great job! Your focus session is complete."_s);
    EXPECT_EQ(request.trigger, (DateComponents{2026, 3, 2, 13, 30, 0}));
}

TEST_F(SessionLifecycle, SchedulingRemovesEveryPendingRequestFirst) {
    controller();
    userNotifications.add({.identifier = u"reminder"_s, .content = {}, .trigger = DateComponents{}},
                          {});
    userNotifications.calls.clear();
    start(u"Review"_s, 300);
    EXPECT_EQ(userNotifications.pending.size(), 1u);
    EXPECT_EQ(userNotifications.calls.last(), u"add timer-completion"_s);
    EXPECT_EQ(userNotifications.calls[userNotifications.calls.size() - 2], u"removeAll"_s);
}

TEST_F(SessionLifecycle, LogsANotificationThatCouldNotBeScheduled) {
    controller();
    log.takeLines();
    userNotifications.error = u"the bus is gone"_s;
    start(u"Review"_s, 300);
    EXPECT_THAT(log.takeLines(), ElementsAre(u"Failed to schedule notification: the bus is gone"_s,
                                             u"📱 Starting new session: Review"_s));
}

TEST_F(SessionLifecycle, AnAnswerOfTheNotificationsAfterTheControllersEndOnlyLogs) {
    userNotifications.answersLate = true;
    start(u"Review"_s, 300);
    crash();
    log.takeLines();
    for (const auto &done : userNotifications.lateCompletions)
        done(u"too late"_s);
    EXPECT_THAT(log.takeLines(), ElementsAre(u"Failed to schedule notification: too late"_s));
}

TEST_F(SessionLifecycle, TheBackgroundActivityLastsAsLongAsTheCountdown) {
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

TEST_F(SessionLifecycle, StoppingInvalidatesTheActivityAndResetsTheDisplay) {
    start(u"Review"_s, 300);
    pass(100);
    controller().stopTimer();
    EXPECT_TRUE(activities.activities[0]->invalidated);
    EXPECT_FALSE(controller().isTimerActive());
    EXPECT_EQ(controller().timeRemaining(), 300.0) << "the length of the count-down that ended";
    EXPECT_EQ(controller().progress(), 1.0);
    EXPECT_TRUE(controller().currentSession()) << "stopping the timer does not end the session";
    EXPECT_TRUE(userNotifications.pending.empty());
    EXPECT_FALSE(defaults.objectForKey(keys::timerStartTime));
}

struct HapticCase {
    const char *name;
    double secondsLeft;
    int cues;
};

class SessionHaptics : public test::SessionTest, public testing::WithParamInterface<HapticCase> {};

TEST_P(SessionHaptics, AreGivenAtOneMinuteThirtyAndTenSeconds) {
    start(u"Review"_s, 300);
    time.setWallClock(time.now() + (300 - GetParam().secondsLeft - 1));
    pass(1);
    EXPECT_EQ(haptics.count, GetParam().cues);
}

INSTANTIATE_TEST_SUITE_P(SecondsLeft, SessionHaptics,
                         testing::Values(HapticCase{"TwoMinutes", 120, 0},
                                         HapticCase{"SixtyOne", 61, 0},
                                         HapticCase{"SixtyAndABit", 60.5, 1},
                                         HapticCase{"Sixty", 60, 1}, HapticCase{"FiftyNine", 59, 0},
                                         HapticCase{"ThirtyOne", 31, 0},
                                         HapticCase{"Thirty", 30, 1}, HapticCase{"Ten", 10, 1},
                                         HapticCase{"Nine", 9, 0}, HapticCase{"RunOut", 0, 2}),
                         [](const auto &test) { return std::string(test.param.name); });

TEST_F(SessionLifecycle, EndingSavesStopsAndClears) {
    start(u"Write report, Review"_s, 300);
    pass(100);
    controller().endSession(std::nullopt, true);
    EXPECT_FALSE(controller().currentSession());
    EXPECT_FALSE(controller().isTimerActive());
    EXPECT_EQ(controller().timeRemaining(), 300.0);
    EXPECT_EQ(controller().progress(), 1.0);
    ASSERT_EQ(history().size(), 1u);
    EXPECT_EQ(history()[0].sessionDate, time.now());
    EXPECT_EQ(history()[0].duration, 300.0) << "a session ended early keeps its planned length";
    EXPECT_EQ(texts(history()[0].goals), (QStringList{u"Write report"_s, u"Review"_s}));
    EXPECT_EQ(history()[0].reflection, QString());
}

TEST_F(SessionLifecycle, EndingLogsEachStepInItsOrder) {
    start(u"Review"_s, 300);
    log.takeLines();
    controller().endSession(u"went well"_s, true);
    EXPECT_THAT(log.takeLines(),
                ElementsAre(u"📱 Ending session: Review"_s,
                            u"📱 Added new session to history: Review"_s,
                            u"📱 Session saved to history: Review"_s,
                            u"📱 Session data cleared: Active=0, Goals='', TimeRemaining=0"_s,
                            u"📱 Session ended, server remains running for future sessions"_s));
    EXPECT_EQ(history()[0].reflection, u"went well"_s);
}

TEST_F(SessionLifecycle, EndingUncompletedLeavesTheHistoryUntouched) {
    start(u"Review"_s, 300);
    defaults.takeWrites();
    controller().endSession(std::nullopt, false);
    EXPECT_FALSE(controller().currentSession());
    EXPECT_THAT(defaults.takeWrites(), Not(Contains(QString(keys::sessionHistory))));
}

TEST_F(SessionLifecycle, EndingWithoutASessionDoesNothingAtAll) {
    controller();
    log.takeLines();
    defaults.takeWrites();
    controller().endSession(std::nullopt, true);
    EXPECT_THAT(log.takeLines(), ElementsAre());
    EXPECT_THAT(defaults.takeWrites(), ElementsAre());
}

TEST_F(SessionLifecycle, TheRunOutFlagSurvivesTheEndUntilTheNextStart) {
    start(u"Review"_s, 300);
    pass(300);
    controller().endSession(std::nullopt, true);
    EXPECT_TRUE(controller().isTimerComplete());
    start(u"Next"_s, 300);
    EXPECT_FALSE(controller().isTimerComplete());
}

TEST_F(SessionLifecycle, RatingsReachTheGoalsOfTheirIds) {
    start(u"a, b, c"_s, 300);
    const FocusSession before = *controller().currentSession();
    controller().updateGoalStatuses({{before.goals[0].id, GoalStatus::completed},
                                     {before.goals[2].id, GoalStatus::notCompleted},
                                     {QUuid::createUuid(), GoalStatus::partiallyCompleted}});
    const FocusSession &after = *controller().currentSession();
    EXPECT_EQ(after.goals[0].status, GoalStatus::completed);
    EXPECT_EQ(after.goals[1].status, std::nullopt);
    EXPECT_EQ(after.goals[2].status, GoalStatus::notCompleted);
    EXPECT_EQ(after.id, before.id);
    EXPECT_EQ(after.startTime, before.startTime);
}

TEST_F(SessionLifecycle, AnEmptyMapOfRatingsStillReassignsTheSession) {
    start(u"a"_s, 300);
    int assignments = 0;
    QObject::connect(&controller(), &SessionViewModel::currentSessionChanged,
                     [&] { ++assignments; });
    controller().updateGoalStatuses({});
    EXPECT_EQ(assignments, 1);
    EXPECT_EQ(controller().currentSession()->goals[0].status, std::nullopt);
}

TEST_F(SessionLifecycle, RatingWithoutASessionDoesNothing) {
    controller().updateGoalStatuses({{QUuid::createUuid(), GoalStatus::completed}});
    EXPECT_FALSE(controller().currentSession());
}

TEST_F(SessionLifecycle, AReflectionIsSavedInThePreferencesAndTheSession) {
    start(u"a"_s, 300);
    controller().saveReflection(u"went well"_s);
    EXPECT_EQ(controller().loadLastReflection(), u"went well"_s);
    EXPECT_EQ(UserPreferences::load(defaults).lastReflection, u"went well"_s);
    EXPECT_EQ(controller().currentSession()->reflection, u"went well"_s);
    EXPECT_EQ(controller().currentSession()->goal, u"a"_s);
}

TEST_F(SessionLifecycle, AReflectionWithoutASessionStaysInThePreferences) {
    controller().saveReflection(u"went well"_s);
    EXPECT_EQ(controller().loadLastReflection(), u"went well"_s);
    EXPECT_FALSE(controller().currentSession());
}

} // namespace
} // namespace tarne
