#include "SessionFixture.h"

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using testing::IsEmpty;

class SessionSync : public test::SessionTest {};

TEST_F(SessionSync, TakesTheTimeFromTheWallClockOverTheMainQueue) {
    start(u"Review"_s, 300);
    pass(10);
    time.sleep(Seconds(100));
    center.post(notifications::didWake);
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 290.0) << "not before the hop";
    time.runPending();
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 190.0);
    EXPECT_DOUBLE_EQ(controller().progress(), 190.0 / 300.0);
}

TEST_F(SessionSync, HappensWhenTheApplicationBecomesActive) {
    start(u"Review"_s, 300);
    time.sleep(Seconds(100));
    center.post(notifications::didBecomeActive);
    time.runPending();
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 200.0);
}

TEST_F(SessionSync, DoesNotSaveTheTimerState) {
    start(u"Review"_s, 300);
    time.sleep(Seconds(100));
    defaults.takeWrites();
    controller().syncTimerWithRealTime();
    time.runPending();
    EXPECT_THAT(defaults.takeWrites(), IsEmpty());
}

TEST_F(SessionSync, CompletesASessionWhoseTimeHasPassed) {
    start(u"Review"_s, 300);
    time.sleep(Seconds(400));
    controller().syncTimerWithRealTime();
    time.runPending();
    EXPECT_TRUE(controller().isTimerComplete());
    EXPECT_EQ(history().size(), 1u);
}

TEST_F(SessionSync, DoesNotCompleteTwice) {
    start(u"Review"_s, 300);
    time.sleep(Seconds(400));
    controller().syncTimerWithRealTime();
    controller().syncTimerWithRealTime();
    time.runPending();
    EXPECT_EQ(haptics.count, 2) << "one run-out's worth";
    EXPECT_EQ(controller().timeRemaining(), 0.0);
    EXPECT_EQ(controller().progress(), 0.0);
}

TEST_F(SessionSync, WithARunOutInBetweenSetsTheValuesAndDoesNotCompleteAgain) {
    start(u"Review"_s, 300);
    time.sleep(Seconds(100));
    controller().syncTimerWithRealTime();
    controller().timerCompleted();
    const int cues = haptics.count;
    time.runPending();
    EXPECT_EQ(haptics.count, cues);
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 200.0) << "what was worked out before the hop";
}

TEST_F(SessionSync, AResumedRunOutWhoseFlagWasLoweredCompletesAgain) {
    start(u"Review"_s, 300);
    pass(300);
    controller().setTimerComplete(false); // The timer screen has come back.
    controller().resumeTimer();
    userNotifications.added.clear();
    controller().syncTimerWithRealTime();
    time.runPending();
    EXPECT_TRUE(controller().isTimerComplete());
    EXPECT_FALSE(controller().isTimerActive());
    EXPECT_EQ(userNotifications.added.size(), 1u);
    EXPECT_EQ(history().size(), 1u) << "merged into the first run-out's";
}

TEST_F(SessionSync, DoesNothingWhilePausedOrIdle) {
    controller().syncTimerWithRealTime();
    EXPECT_EQ(time.pendingBlockCount(), 0u);
    start(u"Review"_s, 300);
    controller().pauseTimer();
    const auto pending = time.pendingBlockCount();
    controller().syncTimerWithRealTime();
    EXPECT_EQ(time.pendingBlockCount(), pending);
}

TEST_F(SessionSync, DoesNothingForACountdownThatIsActiveWithoutAStart) {
    controller().resumeTimer();
    const auto pending = time.pendingBlockCount();
    controller().syncTimerWithRealTime();
    EXPECT_EQ(time.pendingBlockCount(), pending);
    EXPECT_TRUE(controller().isTimerActive());
}

TEST_F(SessionSync, IsDroppedWhenTheControllerGoesBeforeTheHop) {
    start(u"Review"_s, 300);
    time.sleep(Seconds(400));
    controller().syncTimerWithRealTime();
    crash();
    time.runPending();
    EXPECT_EQ(haptics.count, 0);
}

} // namespace
} // namespace tarne::test
