#include "SessionFixture.h"

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using testing::Contains;
using testing::Not;

class SessionCountdown : public test::SessionTest {};

TEST_F(SessionCountdown, TheTickTakesTheTimeFromTheWallClock) {
    start(u"Review"_s, 300);
    pass(1);
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 299.0);
    EXPECT_DOUBLE_EQ(controller().progress(), 299.0 / 300.0);
    time.setWallClock(time.now() + 100);
    pass(1);
    EXPECT_DOUBLE_EQ(controller().timeRemaining(), 198.0);
}

TEST_F(SessionCountdown, EndsItsLengthAfterItsStartHoweverLongAPauseLasts) {
    EXPECT_EQ(controller().countdownEnd(), std::nullopt);
    const Date end = time.now() + 300;
    start(u"Review"_s, 300);
    EXPECT_EQ(controller().countdownEnd(), end);
    pass(10);
    controller().pauseTimer();
    pass(10);
    EXPECT_EQ(controller().countdownEnd(), end);
    controller().stopTimer();
    EXPECT_EQ(controller().countdownEnd(), std::nullopt);
}

TEST_F(SessionCountdown, AClockSetBackByADayShowsMoreThanTheLengthAndLosesNothing) {
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

TEST_F(SessionCountdown, AClockSetForwardByADayCompletesTheSession) {
    start(u"Review"_s, 300);
    time.setWallClock(time.now() + 86400);
    pass(1);
    EXPECT_TRUE(controller().isTimerComplete());
    EXPECT_EQ(history().size(), 1u);
}

TEST_F(SessionCountdown, ABusyMainThreadCostsNoTime) {
    start(u"Review"_s, 300);
    time.block(Seconds(42.5));
    pass(1);
    EXPECT_NEAR(controller().timeRemaining(), 257, 1);
}

TEST_F(SessionCountdown, PausingStopsTheDisplayAndNotTheClock) {
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

TEST_F(SessionCountdown, APausedTimerWritesNoTimerKeysAndStaysStoredAsActive) {
    start(u"Review"_s, 600);
    pass(10);
    controller().pauseTimer();
    defaults.takeWrites();
    pass(10);
    EXPECT_THAT(defaults.takeWrites(), Not(Contains(QString(keys::timerStartTime))));
    EXPECT_TRUE(defaults.boolForKey(keys::timerIsActive));
}

TEST_F(SessionCountdown, APauseThatOutlastsTheTimeCompletesAtTheTickAfterTheResumption) {
    start(u"Review"_s, 300);
    controller().pauseTimer();
    pass(400);
    EXPECT_FALSE(controller().isTimerComplete());
    controller().resumeTimer();
    pass(1);
    EXPECT_TRUE(controller().isTimerComplete());
    EXPECT_EQ(history().size(), 1u);
}

TEST_F(SessionCountdown, PausingAndResumingAnIdleControllerOnlySetsTheFlag) {
    controller().resumeTimer();
    EXPECT_TRUE(controller().isTimerActive());
    pass(3);
    EXPECT_EQ(controller().timeRemaining(), 0.0);
    controller().pauseTimer();
    EXPECT_FALSE(controller().isTimerActive());
}

TEST_F(SessionCountdown, StoppingInvalidatesTheActivityAndResetsTheDisplay) {
    controller();
    const std::size_t timers = time.timerCount();
    start(u"Review"_s, 300);
    pass(100);
    controller().stopTimer();
    EXPECT_EQ(time.timerCount(), timers) << "the tick is gone";
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

} // namespace
} // namespace tarne::test
