#include "ScreenFixture.h"

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::Not;

namespace tarne::test {
namespace {

TEST_F(TimerScreenTest, ShowsTheSetupFaceFromTopToBottom) {
    EXPECT_THAT(ui().texts(),
                ElementsAre(u"Session Setup"_s,
                            u"Configure your focus session and start stillhour"_s, u"00:25:00"_s));
    EXPECT_EQ(ui().names(QAccessible::Button), QStringList{u"Start Session"_s});
    EXPECT_TRUE(ui().has(u"⏱️ Timer"_s));
}

TEST_F(TimerScreenTest, ShowsTheSessionFaceFromTopToBottom) {
    startSession(u"Write report"_s);
    EXPECT_THAT(ui().texts(), ElementsAre(u"⏱️ Session"_s, u"00:25:00"_s));
    EXPECT_EQ(ui().names(QAccessible::Button), (QStringList{u"Pause"_s, u"Stop"_s}));
}

TEST_F(TimerScreenTest, CountsDownOnTheScreen) {
    startSession(u"Write report"_s);
    passAndSettle(61);
    EXPECT_TRUE(ui().has(u"00:23:59"_s));
}

TEST_F(TimerScreenTest, ShowsABadgeWhilePaused) {
    startSession(u"Write report"_s);
    ASSERT_TRUE(ui().click(u"Pause"_s));
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"⏸️ Paused"_s); }));
    // Laid out anew with the next frame.
    EXPECT_FALSE(ui().picture().isNull());
    EXPECT_EQ(ui().names(QAccessible::Button), (QStringList{u"Resume"_s, u"Stop"_s}));
    ASSERT_TRUE(ui().click(u"Resume"_s));
    EXPECT_TRUE(ui().waitUntil([&] { return !ui().has(u"⏸️ Paused"_s); }));
    EXPECT_TRUE(controller().isTimerActive());
}

TEST_F(TimerScreenTest, AsksForTheReflectionWithStop) {
    startSession(u"Write report"_s);
    ASSERT_TRUE(ui().click(u"Stop"_s));
    EXPECT_TRUE(view().showSessionReflection());
    EXPECT_TRUE(controller().isTimerActive());
}

TEST_F(TimerScreenTest, ShowsTheReflectionAboveTheCountdownWhileItsFlagIsUp) {
    startThroughTheSheets(5, u"Review"_s);
    ui().settle();
    EXPECT_FALSE(ui().has(u"How did you do with your goals?"_s));
    passAndSettle(300.5);
    EXPECT_TRUE(ui().has(u"How did you do with your goals?"_s));
    EXPECT_FALSE(ui().has(u"Pause"_s));
    leaveTabAndReturn();
    ui().settle();
    EXPECT_FALSE(ui().has(u"How did you do with your goals?"_s));
    EXPECT_TRUE(ui().has(u"Resume"_s));
}

TEST_F(TimerScreenTest, KeepsASheetThatFallsDueBehindAnotherTabUntilItIsShownAgain) {
    openDurationSheet();
    ASSERT_TRUE(ui().click(u"Continue"_s));
    leaveTab();
    passAndSettle(0.3);
    EXPECT_FALSE(ui().has(u"Session Goal"_s));
    returnToTab();
    ui().settle();
    EXPECT_TRUE(ui().has(u"Session Goal"_s));
}

TEST_F(TimerScreenTest, ReturnsToSetupWhenTheSessionIsCompleted) {
    startSession(u"Write report"_s);
    view().completeSession();
    ui().settle();
    EXPECT_TRUE(ui().has(u"Session Setup"_s));
    EXPECT_FALSE(ui().has(u"Pause"_s));
}

TEST_F(TimerScreenTest, ShowsARestoredSession) {
    storeCountdown(60, 600, u"Review"_s);
    EXPECT_TRUE(ui().has(u"⏱️ Session"_s));
    EXPECT_TRUE(ui().has(u"Pause"_s));
    EXPECT_TRUE(ui().has(u"00:09:00"_s));
}

TEST_F(TimerScreenTest, IsUsedByKeyboardAlone) {
    ui().tab();
    EXPECT_EQ(ui().focusedName(), u"Start Session"_s);
    ui().key(Qt::Key_Space);
    ASSERT_TRUE(ui().has(u"Select Session Duration"_s));
    view().durationSelection()->submit();
    passAndSettle(0.3);
    ui().type(u"Review"_s);
    ui().tab();
    EXPECT_EQ(ui().focusedName(), u"Start session"_s);
    ui().key(Qt::Key_Return);
    EXPECT_TRUE(controller().isTimerActive());
    EXPECT_EQ(controller().currentSession()->goal, u"Review"_s);
    EXPECT_EQ(ui().focusedName(), u"Pause"_s);
    EXPECT_EQ(tabOrder(), (QStringList{u"Stop"_s, u"Pause"_s}));
}

TEST_F(TimerScreenTest, HandsTheKeyboardToTheNextFacesFirstButton) {
    ui().tab();
    ui().key(Qt::Key_Space);
    view().durationSelection()->submit();
    passAndSettle(0.3);
    ui().type(u"Review"_s);
    ui().tab();
    ui().key(Qt::Key_Return);
    EXPECT_EQ(ui().focusedName(), u"Pause"_s);
    ui().key(Qt::Key_Space);
    EXPECT_TRUE(view().isPaused());
    view().completeSession();
    ui().settle();
    EXPECT_EQ(ui().focusedName(), u"Start Session"_s);
}

TEST_F(TimerScreenTest, PressesOnceWithAKeyThatIsHeld) {
    startSession(u"Review"_s);
    ui().key(Qt::Key_Return);
    ASSERT_TRUE(view().isPaused());
    QKeyEvent again(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
    QCoreApplication::sendEvent(&ui().view(), &again);
    EXPECT_TRUE(view().isPaused());
}

TEST_F(TimerScreenTest, PressesWithReturnAsWithSpace) {
    ui().tab();
    ui().key(Qt::Key_Return);
    EXPECT_TRUE(view().showDurationSelection());
}

TEST_F(TimerScreenTest, ShowsAHandOverItsButtons) {
    EXPECT_EQ(ui().cursorOver(u"Start Session"_s), Qt::PointingHandCursor);
    startSession(u"Review"_s);
    EXPECT_EQ(ui().cursorOver(u"Pause"_s), Qt::PointingHandCursor);
    EXPECT_EQ(ui().cursorOver(u"Stop"_s), Qt::PointingHandCursor);
}

TEST_F(TimerScreenTest, KeepsItsControlsWithinReachInTheSmallestWindow) {
    startSession(u"Review"_s);
    ui().view().resize(800, 600);
    ui().settle();
    ui().tab();
    ASSERT_EQ(ui().focusedName(), u"Stop"_s);
    const QQuickItem &stop = *ui().find(u"Stop"_s);
    EXPECT_LE(stop.mapToScene(QPointF(0, stop.height())).y(), 600);
}

} // namespace
} // namespace tarne::test
