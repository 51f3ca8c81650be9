// The sequence of the timer screen's three sheets, and the run-out.

#include "TimerFixture.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace tarne::test {
namespace {

using TimerSheetsTest = TimerViewTest;

TEST_F(TimerSheetsTest, OpensTheDurationSheetFirst) {
    shown().selectDuration();
    EXPECT_TRUE(view().showDurationSelection());
    EXPECT_FALSE(view().showSessionNotes());
    ASSERT_NE(view().durationSelection(), nullptr);
    EXPECT_EQ(view().durationSelection()->selectedDurationText(), u"25 minutes"_s);
}

TEST_F(TimerSheetsTest, OpensTheNotesThreeTenthsOfASecondAfterContinue) {
    shown().selectDuration();
    view().durationSelection()->submit();
    EXPECT_FALSE(view().showDurationSelection());
    pass(0.29);
    EXPECT_FALSE(view().showSessionNotes());
    pass(0.02);
    EXPECT_TRUE(view().showSessionNotes());
}

TEST_F(TimerSheetsTest, OpensNoOtherSheetWhileTheNotesAreDueOrUp) {
    shown().selectDuration();
    view().durationSelection()->submit();
    view().selectDuration();
    EXPECT_FALSE(view().showDurationSelection());
    pass(0.3);
    ASSERT_TRUE(view().showSessionNotes());
    view().selectDuration();
    EXPECT_FALSE(view().showDurationSelection());
    view().sessionNotes()->close();
    view().selectDuration();
    EXPECT_TRUE(view().showDurationSelection());
}

TEST_F(TimerSheetsTest, OpensTheNotesOnceHoweverOftenTheLengthIsSubmitted) {
    shown().selectDuration();
    view().durationSelection()->submit();
    view().durationSelection()->submit();
    pass(0.2);
    view().durationSelection()->submit();
    pass(0.1);
    ASSERT_TRUE(view().showSessionNotes());
    view().sessionNotes()->setSessionGoal(u"Review"_s);
    view().sessionNotes()->startSession();
    pass(1);
    EXPECT_FALSE(view().showSessionNotes());
    EXPECT_EQ(controller().currentSession()->goal, u"Review"_s);
}

TEST_F(TimerSheetsTest, OpensNoSheetOfANewSessionWhileTheReflectionIsDueOrUp) {
    startThroughTheSheets(5, u"Review"_s);
    pass(300);
    view().completeSession();
    view().selectDuration();
    EXPECT_FALSE(view().showDurationSelection());
    pass(0.5);
    view().selectDuration();
    EXPECT_FALSE(view().showDurationSelection());
}

TEST_F(TimerSheetsTest, OpensTheNotesWithTheLastGoal) {
    controller().saveGoal(u"Write report"_s);
    shown().selectDuration();
    view().durationSelection()->submit();
    pass(0.3);
    ASSERT_NE(view().sessionNotes(), nullptr);
    EXPECT_EQ(view().sessionNotes()->sessionGoal(), u"Write report"_s);
}

TEST_F(TimerSheetsTest, AbandonsTheSessionWhenTheDurationSheetIsClosed) {
    shown().selectDuration();
    view().durationSelection()->close();
    pass(10);
    EXPECT_FALSE(view().showDurationSelection());
    EXPECT_FALSE(view().showSessionNotes());
    EXPECT_TRUE(view().isSetupMode());
}

TEST_F(TimerSheetsTest, AbandonsTheSessionWhenTheNotesAreClosed) {
    shown().selectDuration();
    view().durationSelection()->submit();
    pass(0.3);
    view().sessionNotes()->setSessionGoal(u"Review"_s);
    view().sessionNotes()->close();
    pass(10);
    EXPECT_FALSE(view().showSessionNotes());
    EXPECT_TRUE(view().isSetupMode());
    EXPECT_FALSE(controller().currentSession().has_value());
}

TEST_F(TimerSheetsTest, GivesEachPresentationAFreshSheet) {
    shown().selectDuration();
    view().durationSelection()->toggleCustomInput();
    view().durationSelection()->setCustomDuration(u"word"_s);
    view().durationSelection()->close();
    view().selectDuration();
    EXPECT_EQ(view().durationSelection()->customDuration(), u""_s);
    EXPECT_EQ(view().durationSelection()->customInputError(), u""_s);
    EXPECT_FALSE(view().durationSelection()->showCustomInput());
}

TEST_F(TimerSheetsTest, KeepsASheetsViewWhileTheSheetLeavesTheScreen) {
    shown().selectDuration();
    const DurationSelectionView *const sheet = view().durationSelection();
    view().durationSelection()->close();
    EXPECT_EQ(view().durationSelection(), sheet);
}

TEST_F(TimerSheetsTest, HasTheSheetsViewBeforeItsFlagIsHeardOf) {
    bool hadView = false;
    QObject::connect(&shown(), &TimerView::showDurationSelectionChanged, &view(),
                     [&] { hadView = view().durationSelection() != nullptr; });
    view().selectDuration();
    EXPECT_TRUE(hadView);
}

TEST_F(TimerSheetsTest, ReleasesTheFocusOfTheNotesOnlyWhileTheyArePresented) {
    shown().selectDuration();
    view().durationSelection()->submit();
    pass(0.3);
    const QSignalSpy released(view().sessionNotes(), &SessionNotesView::focusReleased);
    center.post(notifications::didBecomeActive);
    pass(0.1);
    EXPECT_EQ(released.size(), 1);
    view().sessionNotes()->close();
    center.post(notifications::didBecomeActive);
    pass(0.1);
    EXPECT_EQ(released.size(), 1);
}

TEST_F(TimerSheetsTest, OpensTheReflectionWithStopAndNothingMore) {
    startThroughTheSheets(10, u"Review"_s);
    pass(60);
    view().resetTimer();
    EXPECT_TRUE(view().showSessionReflection());
    EXPECT_TRUE(controller().isTimerActive());
    EXPECT_TRUE(history().empty());
    pass(60);
    EXPECT_EQ(view().timeText(), u"00:08:00"_s);
}

TEST_F(TimerSheetsTest, GoesOnWithTheSessionWhenTheReflectionIsDismissed) {
    startThroughTheSheets(10, u"Review"_s);
    pass(60);
    view().resetTimer();
    pass(60);
    view().sessionReflection()->close();
    EXPECT_TRUE(view().isTimerActive());
    EXPECT_FALSE(view().isSetupMode());
    pass(60);
    EXPECT_EQ(view().timeText(), u"00:07:00"_s);
}

TEST_F(TimerSheetsTest, OpensTheReflectionHalfASecondAfterTheRunOut) {
    startThroughTheSheets(5, u"Review"_s);
    pass(300);
    EXPECT_EQ(view().timeText(), u"00:00:00"_s);
    pass(0.49);
    EXPECT_FALSE(view().showSessionReflection());
    pass(0.02);
    EXPECT_TRUE(view().showSessionReflection());
    EXPECT_FALSE(view().isSetupMode());
}

TEST_F(TimerSheetsTest, SwellsForAMomentAtTheRunOut) {
    constexpr SpringAnimation spring{.response = 0.5, .dampingFraction = 0.6};
    startThroughTheSheets(5, u"Review"_s);
    pass(299);
    takeAnimations();
    pass(1);
    EXPECT_EQ(view().timerScale(), 1.2);
    pass(0.29);
    EXPECT_EQ(view().timerScale(), 1.2);
    pass(0.02);
    EXPECT_EQ(view().timerScale(), 1.0);
    EXPECT_THAT(takeAnimations(), ElementsAre(Animation{1.2, spring}, Animation{1.0, spring}));
}

TEST_F(TimerSheetsTest, RunsOutBehindTheReflectionThatStopOpened) {
    startThroughTheSheets(5, u"Review"_s);
    pass(290);
    view().resetTimer();
    takeAnimations();
    const QSignalSpy flag(&view(), &TimerView::showSessionReflectionChanged);
    pass(11);
    EXPECT_TRUE(controller().isTimerComplete());
    EXPECT_EQ(takeAnimations().size(), 2u);
    EXPECT_TRUE(view().showSessionReflection());
    EXPECT_EQ(flag.size(), 0);
    EXPECT_EQ(history().size(), 1u);
}

TEST_F(TimerSheetsTest, OpensTheReflectionAgainWhenItWasDismissedAtTheRunOut) {
    startThroughTheSheets(5, u"Review"_s);
    view().resetTimer();
    pass(300.25);
    view().sessionReflection()->close();
    pass(0.3);
    EXPECT_TRUE(view().showSessionReflection());
}

TEST_F(TimerSheetsTest, PutsTheReflectionAwayBeforeItTakesBackTheRunOut) {
    startThroughTheSheets(5, u"Review"_s);
    view().resetTimer();
    leaveTab();
    pass(301);
    ASSERT_TRUE(view().showSessionReflection());
    std::vector<bool> shown;
    QObject::connect(&controller(), &SessionViewModel::isTimerCompleteChanged,
                     [&] { shown.push_back(view().showSessionReflection()); });
    returnToTab();
    EXPECT_THAT(shown, ElementsAre(false));
}

TEST_F(TimerSheetsTest, ShowsNoReflectionForARunOutBehindAnotherTab) {
    startThroughTheSheets(5, u"Review"_s);
    leaveTab();
    pass(301);
    EXPECT_TRUE(controller().isTimerComplete());
    EXPECT_EQ(takeAnimations().back().scale, 1.0);
    returnToTab();
    pass(10);
    EXPECT_FALSE(controller().isTimerComplete());
    EXPECT_FALSE(view().showSessionReflection());
    EXPECT_FALSE(view().isSetupMode());
    EXPECT_EQ(view().timeText(), u"00:00:00"_s);
    EXPECT_TRUE(view().isPaused());
}

TEST_F(TimerSheetsTest, WrapsUpWithStopAfterARunOutBehindAnotherTab) {
    startThroughTheSheets(5, u"Review"_s);
    leaveTab();
    pass(301);
    returnToTab();
    view().resetTimer();
    EXPECT_TRUE(view().showSessionReflection());
    view().completeSession();
    EXPECT_TRUE(view().isSetupMode());
    EXPECT_EQ(history().size(), 1u);
    EXPECT_EQ(view().timeText(), u"00:05:00"_s);
}

TEST_F(TimerSheetsTest, ClosesAPendingReflectionWhenTheTabComesBack) {
    startThroughTheSheets(5, u"Review"_s);
    pass(301);
    ASSERT_TRUE(view().showSessionReflection());
    leaveTabAndReturn();
    EXPECT_FALSE(view().showSessionReflection());
    EXPECT_FALSE(controller().isTimerComplete());
    EXPECT_TRUE(controller().currentSession().has_value());
}

TEST_F(TimerSheetsTest, ForgetsTheReflectionThatFellDueBehindAnotherTab) {
    startThroughTheSheets(5, u"Review"_s);
    pass(300);
    leaveTab();
    pass(0.5);
    EXPECT_TRUE(view().showSessionReflection());
    returnToTab();
    EXPECT_FALSE(view().showSessionReflection());
}

TEST_F(TimerSheetsTest, ShowsTheNotesThatFellDueBehindAnotherTabWhenItComesBack) {
    shown().selectDuration();
    view().durationSelection()->submit();
    leaveTab();
    pass(0.3);
    returnToTab();
    EXPECT_TRUE(view().showSessionNotes());
}

TEST_F(TimerSheetsTest, LowersTheRunOutFlagOfAnEarlierRunOutWhenItAppears) {
    controller().setTimerComplete(true);
    shown();
    pass(1);
    EXPECT_FALSE(controller().isTimerComplete());
    EXPECT_FALSE(view().showSessionReflection());
    EXPECT_TRUE(takeAnimations().empty());
}

TEST_F(TimerSheetsTest, DropsDelaysThatOutliveTheScreen) {
    startThroughTheSheets(5, u"Review"_s);
    view().toggleTimer();
    view().toggleTimer();
    view().selectDuration();
    view().durationSelection()->submit();
    controller().timerCompleted();
    takeAnimations();
    destroyView();
    pass(10);
    EXPECT_TRUE(takeAnimations().empty());
}

} // namespace
} // namespace tarne::test
