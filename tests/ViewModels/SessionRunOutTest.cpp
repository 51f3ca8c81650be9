#include "SessionFixture.h"

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using testing::Contains;
using testing::ElementsAre;

class SessionRunOut : public test::SessionTest {};

TEST_F(SessionRunOut, RunningOutCompletesTheSession) {
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

TEST_F(SessionRunOut, RunningOutSavesAnEntryWithEmptyTextsAndLogsIt) {
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

TEST_F(SessionRunOut, WhoHearsOfTheEntryFindsTheFinishedSession) {
    start(u"Review"_s, 300);
    std::vector<bool> finished;
    const auto observer = center.addObserver(notifications::sessionHistoryUpdated, [&] {
        finished.push_back(controller().currentSession()->completed);
        EXPECT_FALSE(controller().isTimerActive());
        EXPECT_TRUE(controller().isTimerComplete());
        EXPECT_EQ(controller().timeRemaining(), 0.0);
    });
    pass(300);
    EXPECT_THAT(finished, ElementsAre(true));
}

TEST_F(SessionRunOut, RunningOutDropsTheReflectionAndTakesTheCountdownsLength) {
    FocusSession session = controller().createSession(u"Review"_s, 300);
    session.reflection = u"early thoughts"_s;
    controller().startSession(session);
    controller().startTimer(120);
    pass(120);
    EXPECT_EQ(controller().currentSession()->duration, 120.0);
    EXPECT_FALSE(controller().currentSession()->reflection);
}

TEST_F(SessionRunOut, RunningOutLeavesTheKeysTheActivityAndTheScheduledNotification) {
    start(u"Review"_s, 300);
    const auto scheduled = userNotifications.pending;
    pass(300);
    EXPECT_TRUE(defaults.dateForKey(keys::timerStartTime));
    EXPECT_TRUE(defaults.boolForKey(keys::timerIsActive)) << "as the last tick saved them";
    EXPECT_EQ(userNotifications.pending, scheduled);
    EXPECT_FALSE(activities.activities[0]->invalidated);
}

TEST_F(SessionRunOut, RunningOutNotifiesAtOnceUnderANewIdentifier) {
    start(u"Review"_s, 300);
    pass(300);
    const NotificationRequest &notice = userNotifications.added.back();
    EXPECT_EQ(notice.content.title, u"Session Complete"_s);
    EXPECT_EQ(notice.content.body, u"Great job! Your session is complete."_s);
    EXPECT_FALSE(notice.trigger);
    EXPECT_FALSE(QUuid::fromString(notice.identifier).isNull());
    EXPECT_EQ(notice.identifier, notice.identifier.toUpper());
    const QString identifier = notice.identifier;
    start(u"Review"_s, 300);
    pass(300);
    EXPECT_NE(userNotifications.added.back().identifier, identifier);
}

TEST_F(SessionRunOut, RunningOutStopsTheTick) {
    start(u"Review"_s, 300);
    const std::size_t timers = time.timerCount();
    pass(300);
    EXPECT_EQ(time.timerCount(), timers - 1);
}

TEST_F(SessionRunOut, SleepingAcrossTheEndCompletesAtTheFirstTickAfterwards) {
    start(u"Review"_s, 300);
    pass(100);
    time.sleep(Seconds(5000));
    pass(1);
    EXPECT_TRUE(controller().isTimerComplete());
    EXPECT_EQ(controller().currentSession()->endTime, time.now()) << "not the planned end";
}

TEST_F(SessionRunOut, ALengthOfZeroRunsOutAtTheFirstTick) {
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

TEST_F(SessionRunOut, ANegativeLengthRunsOutAtTheFirstTick) {
    start(u"Review"_s, -50);
    pass(1);
    EXPECT_TRUE(controller().isTimerComplete());
}

TEST_F(SessionRunOut, ALengthThatIsNoNumberRunsOutAtTheFirstTickAndKeepsTheHistory) {
    start(u"Review"_s, 300);
    pass(300);
    start(u"Other"_s, std::numeric_limits<double>::quiet_NaN());
    pass(1);
    EXPECT_TRUE(controller().isTimerComplete());
    EXPECT_EQ(history().size(), 1u) << "a record that no document holds is not stored";
}

TEST_F(SessionRunOut, TheRunOutFlagSurvivesTheEndUntilTheNextStart) {
    start(u"Review"_s, 300);
    pass(300);
    controller().endSession(std::nullopt, true);
    EXPECT_TRUE(controller().isTimerComplete());
    start(u"Next"_s, 300);
    EXPECT_FALSE(controller().isTimerComplete());
}

TEST_F(SessionRunOut, KeepsTheRatedGoalsAndTheBlockLists) {
    FocusSession session = controller().createSession(u"a, b"_s, 300);
    session.blockedApps = {u"Mail"_s};
    session.blockedWebsites = {u"news.example"_s};
    controller().startSession(session);
    controller().updateGoalStatuses({{session.goals[1].id, GoalStatus::partiallyCompleted}});
    pass(300);
    const FocusSession &finished = *controller().currentSession();
    EXPECT_EQ(finished.blockedApps, QStringList{u"Mail"_s});
    EXPECT_EQ(finished.blockedWebsites, QStringList{u"news.example"_s});
    ASSERT_EQ(history().size(), 1u);
    for (const auto &goals : {finished.goals, history()[0].goals}) {
        ASSERT_EQ(goals.size(), 2u);
        EXPECT_EQ(goals[0].id, session.goals[0].id);
        EXPECT_EQ(goals[0].status, std::nullopt);
        EXPECT_EQ(goals[1].id, session.goals[1].id);
        EXPECT_EQ(goals[1].status, GoalStatus::partiallyCompleted);
    }
}

TEST_F(SessionRunOut, KeepsTheStartOfTheCountdown) {
    start(u"Review"_s, 300);
    pass(300);
    defaults.takeWrites();
    controller().saveTimerState();
    EXPECT_THAT(defaults.takeWrites(), Contains(QString(keys::timerStartTime)));
}

TEST_F(SessionRunOut, OfACountdownWithoutASessionSavesNothingAndCompletes) {
    controller().startTimer(300);
    log.takeLines();
    pass(300);
    EXPECT_TRUE(controller().isTimerComplete());
    EXPECT_FALSE(controller().isTimerActive());
    EXPECT_FALSE(controller().currentSession());
    EXPECT_TRUE(history().empty());
    EXPECT_EQ(haptics.count, 5) << "one at a minute, at 30 and at 10 seconds, two at the end";
    EXPECT_EQ(userNotifications.added.back().content.title, u"Session Complete"_s);
    EXPECT_EQ(log.takeLines().filter(u"history"_s), QStringList());
}

} // namespace
} // namespace tarne::test
