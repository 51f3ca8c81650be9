#include "SessionFixture.h"

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SessionPersistence : public test::SessionTest {
protected:
    static QStringList clearing() {
        return {u"-TimerStartTime"_s, u"-TimerOriginalDuration"_s,
                u"-TimerIsActive"_s,  u"-TimerSessionGoal"_s,
                u"SessionActive"_s,   u"SessionGoals"_s,
                u"SessionId"_s,       u"TimeRemaining"_s,
                u"SessionDuration"_s, u"SessionProgress"_s,
                u"synchronize"_s};
    }
    static QStringList saving() {
        return {u"TimerStartTime"_s, u"TimerOriginalDuration"_s, u"TimerIsActive"_s,
                u"TimerSessionGoal"_s};
    }
};

TEST_F(SessionPersistence, EachTickWritesTheFourKeysInTheirOrderAndForcesNothing) {
    controller();
    pass(0.5); // The publication falls between two ticks.
    start(u"Review"_s, 300);
    pass(0.9);
    defaults.takeWrites();
    pass(0.2);
    EXPECT_EQ(defaults.takeWrites(), saving());
    pass(0.6);
    defaults.takeWrites();
    pass(3.0);
    QStringList written = defaults.takeWrites();
    written.removeIf([](const QString &key) { return !saving().contains(key); });
    EXPECT_EQ(written, saving() + saving() + saving()) << "once a second";
}

TEST_F(SessionPersistence, WritesTheFourKeysInTheirOrder) {
    start(u"Review"_s, 300.5);
    defaults.takeWrites();
    controller().saveTimerState();
    EXPECT_EQ(defaults.takeWrites(), saving()) << "and the store is not forced to disk";
    EXPECT_EQ(defaults.objectForKey(keys::timerOriginalDuration), DefaultsValue(300.5));
    EXPECT_EQ(defaults.objectForKey(keys::timerIsActive), DefaultsValue(true));
    EXPECT_EQ(defaults.stringForKey(keys::timerSessionGoal), u"Review"_s);
}

TEST_F(SessionPersistence, WritesTheFlagOfAPausedCountdownAsItIs) {
    start(u"Review"_s, 300);
    controller().pauseTimer();
    controller().saveTimerState();
    EXPECT_EQ(defaults.objectForKey(keys::timerIsActive), DefaultsValue(false));
}

TEST_F(SessionPersistence, WritesNothingWithoutACountdown) {
    controller();
    defaults.takeWrites();
    controller().saveTimerState();
    EXPECT_THAT(defaults.takeWrites(), IsEmpty());
}

TEST_F(SessionPersistence, WritesAnEmptyGoalForACountdownWithoutASession) {
    controller().startTimer(300);
    EXPECT_EQ(defaults.objectForKey(keys::timerSessionGoal), DefaultsValue(QString()));
}

TEST_F(SessionPersistence, ClearingRemovesTheKeysEmptiesTheSessionKeysAndForcesTheStore) {
    start(u"Review"_s, 300);
    pass(2);
    const auto lastUpdate = defaults.doubleForKey(keys::lastUpdate);
    defaults.takeWrites();
    controller().clearTimerState();
    EXPECT_EQ(defaults.takeWrites(), clearing());
    EXPECT_EQ(defaults.objectForKey(keys::sessionActive), DefaultsValue(qint64{0}));
    EXPECT_EQ(defaults.objectForKey(keys::sessionGoals), DefaultsValue(QString()));
    EXPECT_EQ(defaults.objectForKey(keys::sessionId), DefaultsValue(QString()));
    EXPECT_EQ(defaults.objectForKey(keys::timeRemaining), DefaultsValue(0.0));
    EXPECT_EQ(defaults.objectForKey(keys::sessionDuration), DefaultsValue(0.0));
    EXPECT_EQ(defaults.objectForKey(keys::sessionProgress), DefaultsValue(0.0));
    EXPECT_EQ(defaults.doubleForKey(keys::lastUpdate), lastUpdate);
}

TEST_F(SessionPersistence, StartingWritesPreferencesThenClearsThenSaves) {
    controller();
    defaults.takeWrites();
    start(u"Review"_s, 300);
    EXPECT_EQ(defaults.takeWrites(),
              QStringList{u"UserPreferences"_s} + clearing() + clearing() + clearing() + saving());
}

TEST_F(SessionPersistence, EndingWritesTheHistoryThenClearsTwiceThenPublishes) {
    start(u"Review"_s, 300);
    defaults.takeWrites();
    controller().endSession(std::nullopt, true);
    EXPECT_EQ(defaults.takeWrites(),
              QStringList{u"SessionHistory"_s} + clearing() + clearing() + clearing().sliced(4));
}

TEST_F(SessionPersistence, ARelaunchWithTimeLeftGoesOnWhereTheWallClockPutsIt) {
    start(u"Write report, Review"_s, 900);
    pass(300);
    const FocusSession before = *controller().currentSession();
    crash();
    pass(240);
    EXPECT_TRUE(controller().isTimerActive());
    EXPECT_FALSE(controller().isTimerComplete());
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 360.0);
    EXPECT_DOUBLE_EQ(controller().progress(), 0.4);
    const FocusSession &restored = *controller().currentSession();
    EXPECT_EQ(restored.goal, u"Write report, Review"_s);
    EXPECT_EQ(texts(restored.goals), (QStringList{u"Write report"_s, u"Review"_s}));
    EXPECT_EQ(restored.duration, 900.0);
    EXPECT_EQ(restored.startTime, time.now()) << "not the stored start";
    EXPECT_NE(restored.id, before.id);
    EXPECT_NE(restored.goals[0].id, before.goals[0].id);
    EXPECT_FALSE(restored.endTime);
    EXPECT_FALSE(restored.reflection);
    EXPECT_FALSE(restored.completed);
    EXPECT_EQ(defaults.dateForKey(keys::timerStartTime), time.now() - 540);
}

TEST_F(SessionPersistence, ARestoredCountdownTicksAndRunsOut) {
    storeCountdown(100, 300, u"Review"_s);
    controller();
    pass(10);
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 190.0);
    pass(190);
    EXPECT_TRUE(controller().isTimerComplete());
    EXPECT_EQ(history().size(), 1u);
}

TEST_F(SessionPersistence, ARestoredCountdownSchedulesNoNotificationAndNoActivity) {
    storeCountdown(100, 300, u"Review"_s);
    controller();
    EXPECT_TRUE(userNotifications.added.empty());
    EXPECT_TRUE(activities.activities.empty());
    EXPECT_THAT(userNotifications.calls, IsEmpty()) << "a pending one of the last run stays";
}

TEST_F(SessionPersistence, ASessionThatRanOutWhileAwayLeavesPendingNotificationsAlone) {
    storeCountdown(400, 300, u"Review"_s);
    controller();
    ASSERT_EQ(history().size(), 1u);
    EXPECT_THAT(userNotifications.calls, IsEmpty());
}

TEST_F(SessionPersistence, ALaunchWithNothingStoredLeavesPendingNotificationsAlone) {
    controller();
    EXPECT_THAT(userNotifications.calls, IsEmpty());
}

TEST_F(SessionPersistence, ARestorationDuringACountdownReplacesItsTick) {
    start(u"Review"_s, 300);
    const std::size_t timers = time.timerCount();
    pass(10);
    controller().restoreTimerState();
    EXPECT_EQ(time.timerCount(), timers);
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 290.0);
    pass(1);
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 289.0) << "the new one counts";
}

TEST_F(SessionPersistence, ARestoredSessionTakesTheBlockListsOfThePreferences) {
    UserPreferences preferences;
    preferences.defaultBlockedApps = {u"Mail"_s};
    preferences.defaultBlockedWebsites = {u"news.example"_s};
    preferences.save(defaults);
    storeCountdown(100, 300, u"Review"_s);
    EXPECT_EQ(controller().currentSession()->blockedApps, QStringList{u"Mail"_s});
    EXPECT_EQ(controller().currentSession()->blockedWebsites, QStringList{u"news.example"_s});
}

TEST_F(SessionPersistence, ARelaunchAfterTheEndPutsTheSessionIntoTheHistory) {
    start(u"Review"_s, 900);
    pass(300);
    crash();
    log.takeLines();
    pass(660);
    controller();
    EXPECT_THAT(log.takeLines(),
                ElementsAre(u"📱 Added new session to history: Review"_s,
                            u"📱 Restored completed session saved to history: Review"_s,
                            u"📱 Session data cleared: Active=0, Goals='', TimeRemaining=0"_s,
                            u"📱 TARNE SessionViewModel initialized - Safari extension can access "
                            u"via shared UserDefaults"_s));
    ASSERT_EQ(history().size(), 1u);
    EXPECT_EQ(history()[0].sessionDate, time.now() - 60) << "when it would have ended";
    EXPECT_EQ(history()[0].reflection, QString());
    EXPECT_EQ(history()[0].goals[0].status, std::nullopt);
    EXPECT_FALSE(controller().currentSession());
    EXPECT_FALSE(controller().isTimerActive());
    EXPECT_FALSE(controller().isTimerComplete()) << "no completion animation, no reflection sheet";
    EXPECT_EQ(controller().timeRemaining(), 0.0);
    EXPECT_EQ(controller().progress(), 1.0);
    EXPECT_FALSE(defaults.objectForKey(keys::timerStartTime));
}

TEST_F(SessionPersistence, ASessionThatRanOutWhileAwayIsInTheHistoryBeforeItsKeysAreCleared) {
    storeCountdown(400, 300.5, u"Write report, Review"_s);
    controller();
    EXPECT_EQ(defaults.takeWrites(),
              QStringList{u"SessionHistory"_s} + clearing() + clearing().sliced(4));
    ASSERT_EQ(history().size(), 1u);
    EXPECT_EQ(history()[0].duration, 300.5);
    EXPECT_EQ(texts(history()[0].goals), (QStringList{u"Write report"_s, u"Review"_s}));
}

TEST_F(SessionPersistence, ARunOutThatWasNeverWrappedUpStaysOneEntryAfterARelaunch) {
    start(u"Review"_s, 300);
    pass(300);
    crash();
    pass(5000);
    controller();
    ASSERT_EQ(history().size(), 1u);
    EXPECT_EQ(history()[0].sessionDate, time.now() - 5000);
}

TEST_F(SessionPersistence, AnInactiveStoredCountdownIsNotRestoredAndStays) {
    storeCountdown(10, 300, u"Review"_s);
    defaults.setObject(keys::timerIsActive, false);
    controller();
    EXPECT_FALSE(controller().currentSession());
    EXPECT_TRUE(defaults.dateForKey(keys::timerStartTime));
    EXPECT_EQ(defaults.objectForKey(keys::timerIsActive), DefaultsValue(false));
}

TEST_F(SessionPersistence, AStartTimeThatIsNoDateIsNotRestored) {
    storeCountdown(10, 300, u"Review"_s);
    defaults.setObject(keys::timerStartTime, 794145600.0);
    controller();
    EXPECT_FALSE(controller().currentSession());
    EXPECT_TRUE(history().empty());
}

TEST_F(SessionPersistence, AnIntegerCountsAsTheActiveFlag) {
    storeCountdown(10, 300, u"Review"_s);
    defaults.setObject(keys::timerIsActive, qint64{1});
    EXPECT_TRUE(controller().isTimerActive());
}

TEST_F(SessionPersistence, AMissingLengthCountsAsRunOut) {
    storeCountdown(10, 300, u"Review"_s);
    defaults.removeObjectForKey(keys::timerOriginalDuration);
    EXPECT_FALSE(controller().isTimerActive());
    ASSERT_EQ(history().size(), 1u);
    EXPECT_EQ(history()[0].duration, 0.0);
    EXPECT_EQ(history()[0].sessionDate, time.now() - 10);
}

TEST_F(SessionPersistence, AMissingLengthCountsAsRunOutWhenTheStartLiesInTheFutureToo) {
    storeCountdown(-1000, 300, u"Review"_s);
    defaults.removeObjectForKey(keys::timerOriginalDuration);
    EXPECT_FALSE(controller().isTimerActive());
    EXPECT_FALSE(defaults.boolForKey(keys::sessionActive));
    EXPECT_EQ(defaults.doubleForKey(keys::sessionProgress), 0.0);
    ASSERT_EQ(history().size(), 1u);
    EXPECT_EQ(history()[0].sessionDate, time.now() + 1000);
}

TEST_F(SessionPersistence, AMissingGoalReadsAsTheEmptyText) {
    storeCountdown(10, 300, u"Review"_s);
    defaults.removeObjectForKey(keys::timerSessionGoal);
    EXPECT_EQ(controller().currentSession()->goal, QString());
    EXPECT_TRUE(controller().currentSession()->goals.empty());
}

TEST_F(SessionPersistence, AStartInTheFutureGivesMoreThanTheLength) {
    storeCountdown(-1000, 300, u"Review"_s);
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 1300.0);
    EXPECT_DOUBLE_EQ(controller().progress(), 1300.0 / 300.0);
    EXPECT_TRUE(controller().isTimerActive());
}

TEST_F(SessionPersistence, ANegativeOrAbsurdLengthCountsAsRunOut) {
    for (const double length : {-300.0, std::numeric_limits<double>::quiet_NaN()}) {
        storeCountdown(10, length, u"Review"_s);
        EXPECT_FALSE(controller().isTimerActive());
        EXPECT_FALSE(defaults.objectForKey(keys::timerStartTime));
        crash();
    }
}

TEST_F(SessionPersistence, AnInfiniteLengthCountsForEverAndBreaksNothing) {
    storeCountdown(10, std::numeric_limits<double>::infinity(), u"Review"_s);
    EXPECT_TRUE(controller().isTimerActive());
    pass(5);
    EXPECT_TRUE(std::isinf(controller().timeRemaining()));
    EXPECT_TRUE(std::isnan(controller().progress())) << "as the arithmetic gives";
    EXPECT_EQ(defaults.stringForKey(keys::sessionGoals), u"Review"_s);
    EXPECT_FALSE(controller().isTimerComplete());
    EXPECT_FALSE(controller().formattedDuration(controller().timeRemaining()).isEmpty());
    controller().endSession(std::nullopt, true);
    EXPECT_TRUE(history().empty()) << "a record that no document holds is not stored";
    EXPECT_FALSE(defaults.objectForKey(keys::timerStartTime));
}

TEST_F(SessionPersistence, AStartThatIsNoNumberCountsAsRunOutAndLeavesNoEntry) {
    controller().saveSessionHistory({{.sessionDate = time.now(), .goals = {}, .duration = 60.0}});
    crash();
    storeCountdown(std::numeric_limits<double>::quiet_NaN(), 300, u"Review"_s);
    EXPECT_FALSE(controller().isTimerActive());
    EXPECT_EQ(history().size(), 1u) << "the history that was there stays";
    EXPECT_FALSE(defaults.objectForKey(keys::timerStartTime));
}

TEST_F(SessionPersistence, ALengthStoredAsTextIsRead) {
    storeCountdown(10, 0, u"Review"_s);
    defaults.setObject(keys::timerOriginalDuration, u"300"_s);
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 290.0);
}

TEST_F(SessionPersistence, ALengthOfAnotherKindCountsAsNone) {
    for (const DefaultsValue &length :
         {DefaultsValue(QByteArray("300")), DefaultsValue(u"five"_s), DefaultsValue(time.now())}) {
        storeCountdown(10, 0, u"Review"_s);
        defaults.setObject(keys::timerOriginalDuration, length);
        EXPECT_FALSE(controller().isTimerActive());
        EXPECT_EQ(controller().timeRemaining(), 0.0);
        EXPECT_EQ(history().size(), 1u) << "merged into one";
        crash();
    }
}

TEST_F(SessionPersistence, AGoalThatIsNoTextReadsAsTheEmptyText) {
    storeCountdown(10, 300, u"Review"_s);
    defaults.setObject(keys::timerSessionGoal, QByteArray("Review"));
    EXPECT_EQ(controller().currentSession()->goal, QString());
    EXPECT_TRUE(controller().isTimerActive());
}

TEST_F(SessionPersistence, ARelaunchWhilePausedResumesCounting) {
    start(u"Review"_s, 600);
    pass(100);
    controller().pauseTimer();
    pass(50);
    crash();
    pass(50);
    EXPECT_TRUE(controller().isTimerActive());
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 400.0) << "the pause is gone";
}

TEST_F(SessionPersistence, RestoredGoalsAreUnrated) {
    start(u"Review"_s, 600);
    controller().updateGoalStatuses(
        {{controller().currentSession()->goals[0].id, GoalStatus::completed}});
    crash();
    EXPECT_EQ(controller().currentSession()->goals[0].status, std::nullopt);
}

} // namespace
} // namespace tarne::test
