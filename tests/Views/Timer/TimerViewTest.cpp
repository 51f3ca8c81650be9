// The timer screen's values, faces and operations.

#include "TimerFixture.h"

#include <QSignalSpy>

#include <limits>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace tarne::test {
namespace {

constexpr double minutes = 60.0;

TEST_F(TimerViewTest, BeginsInSetupWithTheDefaultLength) {
    storeDefaultDuration(45 * minutes);
    EXPECT_EQ(view().selectedDuration(), 45 * minutes);
    EXPECT_EQ(view().timeRemaining(), 45 * minutes);
    EXPECT_FALSE(view().isTimerActive());
    EXPECT_EQ(view().progress(), 1.0);
    EXPECT_TRUE(view().isSetupMode());
    EXPECT_FALSE(view().showDurationSelection());
    EXPECT_FALSE(view().showSessionNotes());
    EXPECT_FALSE(view().showSessionReflection());
    EXPECT_EQ(view().timerScale(), 1.0);
}

TEST_F(TimerViewTest, BeginsWithTwentyFiveMinutesWhenNothingIsStored) {
    EXPECT_EQ(shown().timeText(), u"00:25:00"_s);
}

TEST_F(TimerViewTest, BeginsWithTwentyFiveMinutesWhenThePreferencesAreUnreadable) {
    defaults.setObject(keys::userPreferences, QByteArray("{\"defaultDuration\":600"));
    EXPECT_EQ(shown().timeText(), u"00:25:00"_s);
}

TEST_F(TimerViewTest, ShowsTheChosenLengthInSetup) {
    shown().selectDuration();
    view().durationSelection()->selectPreset(60);
    EXPECT_EQ(view().selectedDuration(), 60 * minutes);
    EXPECT_EQ(view().timeText(), u"01:00:00"_s);
}

TEST_F(TimerViewTest, KeepsTheChosenLengthOnScreenWhenTheSheetIsClosed) {
    shown().selectDuration();
    view().durationSelection()->selectPreset(60);
    view().durationSelection()->close();
    pass(1);
    EXPECT_EQ(view().timeText(), u"01:00:00"_s);
    EXPECT_TRUE(view().isSetupMode());
    EXPECT_FALSE(view().showSessionNotes());
    EXPECT_EQ(UserPreferences::load(defaults).defaultDuration, 25 * minutes);
}

TEST_F(TimerViewTest, FallsBackToTheStoredLengthWhenTheTabComesBack) {
    shown().selectDuration();
    view().durationSelection()->selectPreset(60);
    view().durationSelection()->close();
    leaveTabAndReturn();
    EXPECT_EQ(view().timeText(), u"00:25:00"_s);
}

TEST_F(TimerViewTest, FollowsTheControllerWhileItIsShown) {
    shown();
    start(u"Review"_s, 10 * minutes);
    EXPECT_TRUE(view().isTimerActive());
    pass(150);
    EXPECT_EQ(view().timeRemaining(), 7.5 * minutes);
    EXPECT_EQ(view().progress(), 0.75);
    EXPECT_EQ(view().timeText(), u"00:07:30"_s);
}

TEST_F(TimerViewTest, FollowsNothingBeforeItIsShown) {
    view();
    start(u"Review"_s, 10 * minutes);
    pass(60);
    EXPECT_FALSE(view().isTimerActive());
    EXPECT_EQ(view().timeRemaining(), 25 * minutes);
    EXPECT_EQ(view().progress(), 1.0);
}

TEST_F(TimerViewTest, FollowsNothingWhileAnotherTabIsShown) {
    startThroughTheSheets(10, u"Review"_s);
    pass(60);
    leaveTab();
    pass(60);
    EXPECT_EQ(view().timeRemaining(), 9 * minutes);
    returnToTab();
    EXPECT_EQ(view().timeRemaining(), 8 * minutes);
    EXPECT_EQ(view().progress(), 0.8);
}

TEST_F(TimerViewTest, FollowsOnceHoweverOftenItIsToldToAppear) {
    shown();
    shown();
    controller().timerCompleted();
    EXPECT_EQ(takeAnimations().size(), 1u);
}

TEST_F(TimerViewTest, StartsTheSessionWithTheStoredGoalAndTheChosenLength) {
    startThroughTheSheets(50, u"Write report, Review"_s);
    ASSERT_TRUE(controller().currentSession().has_value());
    EXPECT_EQ(controller().currentSession()->goal, u"Write report, Review"_s);
    EXPECT_EQ(texts(controller().currentSession()->goals),
              (QStringList{u"Write report"_s, u"Review"_s}));
    EXPECT_EQ(controller().currentSession()->duration, 50 * minutes);
    EXPECT_TRUE(controller().isTimerActive());
    EXPECT_FALSE(view().isSetupMode());
    EXPECT_TRUE(view().isTimerActive());
    EXPECT_EQ(view().timeText(), u"00:50:00"_s);
}

TEST_F(TimerViewTest, SwellsForAMomentWhenASessionStarts) {
    constexpr SpringAnimation spring{.response = 0.3, .dampingFraction = 0.6};
    startThroughTheSheets(10, u"Review"_s);
    EXPECT_EQ(view().timerScale(), 1.05);
    EXPECT_THAT(takeAnimations(), ElementsAre(Animation{1.05, spring}));
    pass(0.19);
    EXPECT_EQ(view().timerScale(), 1.05);
    pass(0.02);
    EXPECT_EQ(view().timerScale(), 1.0);
    EXPECT_THAT(takeAnimations(), ElementsAre(Animation{1.0, spring}));
}

TEST_F(TimerViewTest, PausesAndResumes) {
    startThroughTheSheets(10, u"Review"_s);
    view().toggleTimer();
    EXPECT_FALSE(controller().isTimerActive());
    EXPECT_FALSE(view().isTimerActive());
    EXPECT_TRUE(view().isPaused());
    view().toggleTimer();
    EXPECT_TRUE(controller().isTimerActive());
    EXPECT_FALSE(view().isPaused());
}

TEST_F(TimerViewTest, ShrinksForAMomentWhenItIsToggled) {
    constexpr SpringAnimation spring{.response = 0.2, .dampingFraction = 0.6};
    startThroughTheSheets(10, u"Review"_s);
    pass(1);
    takeAnimations();
    view().toggleTimer();
    EXPECT_EQ(view().timerScale(), 0.98);
    pass(0.09);
    EXPECT_EQ(view().timerScale(), 0.98);
    pass(0.02);
    EXPECT_EQ(view().timerScale(), 1.0);
    EXPECT_THAT(takeAnimations(), ElementsAre(Animation{0.98, spring}, Animation{1.0, spring}));
}

TEST_F(TimerViewTest, StandsStillInAPauseAndJumpsBehindIt) {
    startThroughTheSheets(5, u"Review"_s);
    view().toggleTimer();
    pass(40);
    EXPECT_EQ(view().timeText(), u"00:05:00"_s);
    view().toggleTimer();
    EXPECT_EQ(view().timeText(), u"00:05:00"_s);
    pass(1);
    EXPECT_EQ(view().timeText(), u"00:04:19"_s);
}

TEST_F(TimerViewTest, KeepsAPauseOnScreenWhenTheTabComesBack) {
    startThroughTheSheets(10, u"Review"_s);
    pass(60);
    view().toggleTimer();
    leaveTab();
    pass(60);
    returnToTab();
    EXPECT_FALSE(view().isSetupMode());
    EXPECT_TRUE(view().isPaused());
    EXPECT_EQ(view().timeText(), u"00:09:00"_s);
    pass(60);
    EXPECT_EQ(view().timeText(), u"00:09:00"_s);
    view().toggleTimer();
    pass(1);
    EXPECT_EQ(view().timeText(), u"00:06:59"_s);
}

TEST_F(TimerViewTest, RunsOutOnTheTickBehindAPauseThatLastedTooLong) {
    startThroughTheSheets(5, u"Review"_s);
    view().toggleTimer();
    pass(400);
    view().toggleTimer();
    pass(1);
    EXPECT_EQ(view().timeText(), u"00:00:00"_s);
    pass(0.5);
    EXPECT_TRUE(view().showSessionReflection());
}

TEST_F(TimerViewTest, ShowsTheSessionFaceOfARestoredCountdown) {
    storeCountdown(60, 10 * minutes, u"Review"_s);
    shown();
    EXPECT_FALSE(view().isSetupMode());
    EXPECT_TRUE(view().isTimerActive());
    EXPECT_FALSE(view().isPaused());
    pass(1);
    EXPECT_EQ(view().timeText(), u"00:08:59"_s);
    EXPECT_NEAR(view().progress(), 539.0 / 600.0, 1e-9);
}

TEST_F(TimerViewTest, ShowsSetupWhenTheStoredCountdownRanOutMeanwhile) {
    storeCountdown(601, 10 * minutes, u"Review"_s);
    shown();
    EXPECT_TRUE(view().isSetupMode());
    EXPECT_FALSE(view().showSessionReflection());
    EXPECT_EQ(view().timeText(), u"00:25:00"_s);
}

TEST_F(TimerViewTest, EndsTheSessionAndReturnsToSetupWhenTheReflectionCompletes) {
    startThroughTheSheets(10, u"Review"_s);
    pass(60);
    view().resetTimer();
    view().completeSession();
    EXPECT_FALSE(controller().currentSession().has_value());
    EXPECT_FALSE(controller().isTimerActive());
    ASSERT_EQ(history().size(), 1u);
    EXPECT_EQ(history().front().duration, 10 * minutes);
    EXPECT_EQ(history().front().reflection, u""_s);
    EXPECT_TRUE(view().isSetupMode());
    EXPECT_FALSE(view().isPaused());
}

TEST_F(TimerViewTest, ShowsTheLengthOfTheLastCountdownAfterASession) {
    startThroughTheSheets(10, u"Review"_s);
    pass(60);
    view().completeSession();
    EXPECT_EQ(view().timeText(), u"00:10:00"_s);
}

TEST_F(TimerViewTest, ShowsTheDefaultLengthAtTheNextAppearanceAfterASession) {
    startThroughTheSheets(10, u"Review"_s);
    view().completeSession();
    UserPreferences preferences = controller().userPreferences();
    preferences.defaultDuration = 45 * minutes;
    controller().updatePreferences(preferences);
    EXPECT_EQ(view().timeText(), u"00:10:00"_s);
    leaveTabAndReturn();
    EXPECT_EQ(view().selectedDuration(), 45 * minutes);
    EXPECT_EQ(view().timeText(), u"00:45:00"_s);
}

TEST_F(TimerViewTest, ShowsTheDefaultLengthAtTheNextAppearanceAfterARestoredSession) {
    storeCountdown(60, 10 * minutes, u"Review"_s);
    shown().completeSession();
    EXPECT_EQ(view().timeText(), u"00:10:00"_s);
    leaveTabAndReturn();
    EXPECT_EQ(view().timeText(), u"00:25:00"_s);
}

TEST_F(TimerViewTest, StartsASecondSessionFromTheSetupFaceThatCameBack) {
    startThroughTheSheets(10, u"Review"_s);
    view().completeSession();
    startThroughTheSheets(15, u"Write"_s);
    EXPECT_FALSE(view().isSetupMode());
    EXPECT_EQ(view().timeText(), u"00:15:00"_s);
    EXPECT_EQ(controller().currentSession()->goal, u"Write"_s);
}

TEST_F(TimerViewTest, ShowsASmallOrbInSetup) {
    EXPECT_EQ(shown().orbProgress(), 0.1);
}

TEST_F(TimerViewTest, LetsTheOrbGrowWithTheTimeElapsed) {
    startThroughTheSheets(10, u"Review"_s);
    EXPECT_EQ(view().orbProgress(), 0.0);
    pass(150);
    EXPECT_EQ(view().orbProgress(), 0.25);
    pass(450);
    EXPECT_EQ(view().orbProgress(), 1.0);
}

TEST_F(TimerViewTest, TellsTheOrbAndTheBadgeOfEveryChangeOfFace) {
    const QSignalSpy orbChanges(&shown(), &TimerView::orbProgressChanged);
    const QSignalSpy pauseChanges(&view(), &TimerView::isPausedChanged);
    startThroughTheSheets(10, u"Review"_s);
    EXPECT_GE(orbChanges.size(), 1);
    const auto before = pauseChanges.size();
    view().toggleTimer();
    EXPECT_EQ(pauseChanges.size(), before + 1);
    view().completeSession();
    EXPECT_EQ(pauseChanges.size(), before + 2);
    EXPECT_FALSE(view().isPaused());
}

TEST_F(TimerViewTest, SurvivesALengthThatIsNoNumber) {
    shown();
    start(u"Review"_s, std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(view().timeText(), u"00:00:00"_s);
    pass(2);
    EXPECT_EQ(view().timeText(), u"00:00:00"_s);
    EXPECT_TRUE(view().showSessionReflection());
}

TEST_F(TimerViewTest, RunsOutOnTheFirstTickOfAnEmptyLength) {
    shown();
    start(u"Review"_s, 0.0);
    pass(1.5);
    EXPECT_TRUE(view().showSessionReflection());
    EXPECT_EQ(view().orbProgress(), 0.1);
}

TEST(FormatTime, DropsTheFractionAndPadsToTwoDigits) {
    EXPECT_EQ(TimerView::formatTime(0.0), u"00:00:00"_s);
    EXPECT_EQ(TimerView::formatTime(59.999), u"00:00:59"_s);
    EXPECT_EQ(TimerView::formatTime(3725.9), u"01:02:05"_s);
    EXPECT_EQ(TimerView::formatTime(10800.0), u"03:00:00"_s);
    EXPECT_EQ(TimerView::formatTime(360000.0), u"100:00:00"_s);
}

TEST(FormatTime, SaturatesWhatIsNoNumberOfSeconds) {
    EXPECT_EQ(TimerView::formatTime(std::numeric_limits<double>::quiet_NaN()), u"00:00:00"_s);
    EXPECT_EQ(TimerView::formatTime(std::numeric_limits<double>::infinity()),
              u"2562047788015215:30:07"_s);
}

} // namespace
} // namespace tarne::test
