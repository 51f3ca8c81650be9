// What presses and held keys do around the sheets, in the whole window.

#include "ComposingInputMethod.h"
#include "ShellFixture.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class SheetPresses : public test::ShellTest, public testing::WithParamInterface<QSize> {
protected:
    void SetUp() override {
        completeOnboardingBefore();
        // Made here, so that it has its size.
        ui(GetParam()).settle();
    }

    SessionViewModel &controller() { return content().sessionViewModel(); }

    void goTo(const QString &control) {
        for (int steps = 0; steps < 60 && ui().focusedName() != control; ++steps)
            ui().tab();
        ASSERT_EQ(ui().focusedName(), control);
    }
    /// The middle of a control, which is scrolled to where it is out of sight.
    QPointF placeOf(const QString &name, QAccessible::Role role = QAccessible::NoRole) {
        EXPECT_FALSE(ui().picture().isNull()); // What has just come up has its place by now.
        const QRectF inSight(QPointF(), QSizeF(ui().view().size()));
        // What has the focus is brought into sight later, and all moves with it.
        EXPECT_TRUE(ui().waitUntil([&] {
            const QQuickItem *const focused = ui().view().activeFocusItem();
            return !focused || inSight.contains(focused->mapRectToScene(focused->boundingRect()));
        }));
        if (!inSight.contains(ui().middleOf(name, role))) {
            ui().find(name, role)->forceActiveFocus(Qt::TabFocusReason);
            EXPECT_FALSE(ui().picture().isNull());
        }
        return ui().middleOf(name, role);
    }
    void click(const QString &name, QAccessible::Role role = QAccessible::NoRole) {
        ui().clickAt(placeOf(name, role));
    }
    void pressByKey(const QString &control) {
        goTo(control);
        ui().key(Qt::Key_Space);
    }
    void waitForNotes() {
        pass(0.3);
        ui().settle();
    }
    void openNotes() {
        click(u"Start Session"_s);
        click(u"Continue"_s);
        waitForNotes();
    }
    void startSession() {
        openNotes();
        ui().type(u"Review"_s);
        click(u"Start session"_s);
    }
    void openReflection() {
        startSession();
        click(u"Stop"_s);
        click(u"Completed"_s);
    }
    void openFeedback() {
        openReflection();
        click(u"Complete reflection"_s);
        awaitRequest();
    }
    void awaitRequest() {
        ASSERT_TRUE(ui().waitUntil([&] { return !feedback.gemini.requests.empty(); }));
    }
    /// Writes into a field as an assistive tool does, wherever the focus is.
    void dictate(const QString &name, const QString &text) {
        QQuickItem *const field = ui().find(name, QAccessible::EditableText);
        ASSERT_TRUE(field) << qPrintable(name);
        QAccessible::queryAccessibleInterface(field)->setText(QAccessible::Value, text);
        ui().settle();
    }
    void doubleClick(const QString &name) {
        const QPointF position = placeOf(name, QAccessible::Button);
        ui().clickAt(position);
        ui().clickAgainAt(position);
    }
    /// How many sheets lie over the window, those included that others cover.
    int sheets() {
        int count = 0;
        for (const QQuickItem *const item : ui().view().contentItem()->childItems())
            count += item->inherits("tarne::ModalLayer") && item->isVisible();
        return count;
    }
    bool isSheetOpen(const QString &name) {
        return ui().has(name, QAccessible::Dialog) && sheets() == 1;
    }
};

TEST_P(SheetPresses, SpaceTwiceOnContinueLeavesOneSheet) {
    goTo(u"Start Session"_s);
    ui().key(Qt::Key_Space);
    goTo(u"Continue"_s);
    ui().key(Qt::Key_Space);
    ui().key(Qt::Key_Space);
    EXPECT_EQ(sheets(), 0);
    waitForNotes();
    EXPECT_TRUE(isSheetOpen(u"Session Goal"_s));
    ui().type(u"Review"_s);
    goTo(u"Start session"_s);
    ui().key(Qt::Key_Space);
    pass(1);
    ui().settle();
    EXPECT_EQ(sheets(), 0);
    EXPECT_TRUE(controller().isTimerActive());
    EXPECT_TRUE(ui().has(u"Pause"_s));
}

TEST_P(SheetPresses, ADoubleClickOnContinueLeavesOneSheet) {
    click(u"Start Session"_s);
    doubleClick(u"Continue"_s);
    EXPECT_EQ(sheets(), 0);
    waitForNotes();
    EXPECT_TRUE(isSheetOpen(u"Session Goal"_s));
}

TEST_P(SheetPresses, NothingOpensASheetWhileTheNotesAreDue) {
    click(u"Start Session"_s);
    click(u"Continue"_s);
    click(u"Start Session"_s);
    ui().accessible(u"Start Session"_s)
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(sheets(), 0);
    waitForNotes();
    EXPECT_TRUE(isSheetOpen(u"Session Goal"_s));
}

TEST_P(SheetPresses, ADoubleClickOnStartSessionOpensTheFirstSheetAndPressesNothingInIt) {
    doubleClick(u"Start Session"_s);
    EXPECT_TRUE(isSheetOpen(u"Select Session Duration"_s));
    EXPECT_EQ(content().timerView()->durationSelection()->selectedPreset(), 25);
}

TEST_P(SheetPresses, ADoubleClickThatBeginsASessionPressesNothingOnItsFace) {
    openNotes();
    ui().type(u"Review"_s);
    doubleClick(u"Start session"_s);
    EXPECT_EQ(sheets(), 0);
    EXPECT_TRUE(controller().isTimerActive());
}

TEST_P(SheetPresses, ADoubleClickOnStopOpensTheReflectionAndNothingMore) {
    startSession();
    doubleClick(u"Stop"_s);
    EXPECT_TRUE(isSheetOpen(u"How did you do with your goals?"_s));
    EXPECT_TRUE(content().timerView()->sessionReflection()->goalStatuses().isEmpty());
}

TEST_P(SheetPresses, ADoubleClickOnTheCheckMarkDoesNotFinishTheSession) {
    openReflection();
    doubleClick(u"Complete reflection"_s);
    EXPECT_TRUE(ui().has(u"Session Feedback"_s, QAccessible::Dialog));
    EXPECT_TRUE(controller().currentSession());
    EXPECT_TRUE(feedback.pasteboard.text.isEmpty());
}

TEST_P(SheetPresses, ADoubleClickOnFinishSessionStaysOnTheSetupFace) {
    openFeedback();
    // Where "Start Session" lies in some windows.
    const QPointF position(GetParam().width() / 2.0, placeOf(u"Finish session"_s).y());
    ui().clickAt(position);
    ui().clickAgainAt(position);
    EXPECT_EQ(sheets(), 0);
    EXPECT_FALSE(controller().currentSession());
    EXPECT_TRUE(ui().has(u"Session Setup"_s));
}

TEST_P(SheetPresses, ADoubleClickOnACloseButtonClosesOneSheet) {
    openFeedback();
    doubleClick(u"Close"_s);
    EXPECT_TRUE(isSheetOpen(u"How did you do with your goals?"_s));
}

TEST_P(SheetPresses, APressElsewhereCountsAtOnce) {
    openReflection();
    const QPointF checkMark = placeOf(u"Complete reflection"_s);
    ui().clickAt(checkMark);
    const QPointF share = placeOf(u"Save & Share"_s);
    ui().hover(share);
    ui().clickAgainAt(share);
    EXPECT_FALSE(feedback.pasteboard.text.isEmpty());
}

TEST_P(SheetPresses, SpaceHeldOnFinishSessionStaysOnTheSetupFace) {
    openFeedback();
    goTo(u"Finish session"_s);
    ui().holdKey(Qt::Key_Space, 3);
    ui().releaseKey(Qt::Key_Space);
    EXPECT_EQ(sheets(), 0);
    EXPECT_FALSE(controller().currentSession());
    EXPECT_TRUE(ui().has(u"Session Setup"_s));
}

TEST_P(SheetPresses, ReturnHeldOnContinueLeavesTheNotesAsTheyWere) {
    goTo(u"Start Session"_s);
    ui().key(Qt::Key_Space);
    goTo(u"Continue"_s);
    ui().holdKey(Qt::Key_Return, 1);
    waitForNotes();
    for (int repeat = 0; repeat < 3; ++repeat) {
        QKeyEvent again(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, u"\r"_s, true);
        QCoreApplication::sendEvent(&ui().view(), &again);
    }
    EXPECT_EQ(content().timerView()->sessionNotes()->sessionGoal(), QString());
    ui().releaseKey(Qt::Key_Return);
    ui().key(Qt::Key_Return);
    EXPECT_EQ(content().timerView()->sessionNotes()->sessionGoal(), u"\n"_s);
}

TEST_P(SheetPresses, TheLoadingCardIsDrawnBeforeTheKeyIsAskedFor) {
    feedback.items.items.clear();
    openReflection();
    int frames = 0;
    QObject::connect(&ui().view(), &QQuickWindow::frameSwapped, &ui().view(), [&] { ++frames; });
    bool wasAsked = false;
    feedback.items.beforeCopy = [&] {
        wasAsked = true;
        EXPECT_TRUE(ui().has(u"Generating personalized feedback..."_s));
        EXPECT_GT(frames, 0);
    };
    QObject::connect(content().timerView()->sessionReflection(),
                     &SessionReflectionView::showingFeedbackChanged, [&] { frames = 0; });
    click(u"Complete reflection"_s);
    EXPECT_TRUE(ui().waitUntil([&] { return ui().has(u"Unable to generate feedback"_s); }));
    EXPECT_TRUE(wasAsked);
}

TEST_P(SheetPresses, WhatAScreenReaderWritesReachesTheSessionAndItsReflection) {
    openNotes();
    click(u"Close"_s);
    click(u"Start Session"_s);
    click(u"Custom Duration"_s);
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"5-180"_s); }));
    dictate(u"5-180"_s, u"30"_s);
    pressByKey(u"Set"_s);
    pressByKey(u"Continue"_s);
    waitForNotes();
    while (ui().focusedName() != u"Close"_s)
        ui().tab();
    dictate(u"Session Goal"_s, u"Dictated"_s);
    click(u"Start session"_s);
    ASSERT_TRUE(controller().currentSession());
    EXPECT_EQ(controller().currentSession()->goal, u"Dictated"_s);
    EXPECT_EQ(controller().currentSession()->duration, 30 * 60);
    click(u"Stop"_s);
    click(u"Completed"_s);
    dictate(u"Reflection"_s, u"It went well."_s);
    click(u"Complete reflection"_s);
    EXPECT_EQ(controller().currentSession()->reflection, u"It went well."_s);
    awaitRequest();
    content().timerView()->sessionReflection()->feedback()->setEditingReflection(true);
    dictate(u"Your Reflection"_s, u"It went very well."_s);
    click(u"Finish session"_s);
    EXPECT_EQ(controller().loadLastReflection(), u"It went very well."_s);
}

TEST_P(SheetPresses, WhatIsStillBeingComposedIsWrittenWhenAButtonIsPressed) {
    test::ComposingInputMethod inputMethod;
    openNotes();
    ui().type(u"Read "_s);
    inputMethod.compose(u"本"_s);
    click(u"Start session"_s);
    ASSERT_TRUE(controller().currentSession());
    EXPECT_EQ(controller().currentSession()->goal, u"Read 本"_s);
    click(u"Stop"_s);
    click(u"Completed"_s);
    click(u"Reflection"_s, QAccessible::EditableText);
    inputMethod.compose(u"良い"_s);
    click(u"Complete reflection"_s);
    EXPECT_EQ(controller().currentSession()->reflection, u"良い"_s);
    awaitRequest();
    click(u"Edit"_s);
    EXPECT_FALSE(ui().picture().isNull());
    goTo(u"Your Reflection"_s);
    ui().key(Qt::Key_End);
    inputMethod.compose(u"!"_s);
    click(u"Save & Share"_s);
    EXPECT_TRUE(feedback.pasteboard.text.contains(u"良い!"_s));
    inputMethod.compose(u"?"_s);
    click(u"Finish session"_s);
    EXPECT_EQ(controller().loadLastReflection(), u"良い!?"_s);
}

std::string nameOf(const testing::TestParamInfo<QSize> &size) {
    return std::to_string(size.param.width()) + "x" + std::to_string(size.param.height());
}
INSTANTIATE_TEST_SUITE_P(AtEachSize, SheetPresses,
                         // In the last one "Start Session" lies under "Continue".
                         testing::Values(QSize(800, 600), QSize(1000, 700), QSize(900, 640),
                                         QSize(1000, 1050)),
                         nameOf);

} // namespace
} // namespace tarne::test
