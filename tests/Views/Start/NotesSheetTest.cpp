#include "ScreenFixture.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace tarne::test {
namespace {

class NotesSheetTest : public TimerScreenTest {
protected:
    void openWithLastGoal(const QString &goal) {
        controller().saveGoal(goal);
        openNotesSheet();
    }
    /// What the window's focus item is, as an assistive tool sees it.
    bool editorHasFocus() {
        return ui().focusedName() == u"Session Goal"_s && ui().view().activeFocusItem() &&
               ui().view().activeFocusItem()->property("cursorPosition").isValid();
    }
    /// Goes on with Tab to the named control, and presses the space bar there.
    void pressByTab(const QString &name) {
        for (int steps = 0; steps < 10 && ui().focusedName() != name; ++steps)
            ui().tab();
        ASSERT_EQ(ui().focusedName(), name);
        ui().key(Qt::Key_Space);
    }
    /// Whether the start button can be pressed.
    bool canStart() { return ui().isEnabled(u"Start session"_s); }
};

TEST_F(NotesSheetTest, ShowsItsParts) {
    openNotesSheet();
    EXPECT_THAT(ui().texts(), ElementsAre(u"Session Goal"_s));
    EXPECT_TRUE(ui().has(u"Close"_s, QAccessible::Button));
    EXPECT_TRUE(ui().has(u"Session Goal"_s, QAccessible::EditableText));
}

TEST_F(NotesSheetTest, IsFiveHundredAndTwentyByFourHundredPoints) {
    openNotesSheet();
    const QQuickItem *const panel = ui().find(u"Session Goal"_s, QAccessible::Dialog);
    ASSERT_TRUE(panel);
    EXPECT_EQ(panel->size(), QSizeF(520, 400));
    const QQuickItem *const editor = ui().find(u"Session Goal"_s, QAccessible::EditableText);
    ASSERT_TRUE(editor);
}

TEST_F(NotesSheetTest, DisablesTheStartButtonWithoutAGoal) {
    openNotesSheet();
    EXPECT_FALSE(canStart());
    ui().type(u" "_s);
    EXPECT_FALSE(canStart());
    ui().type(u"R"_s);
    EXPECT_TRUE(canStart());
    ui().key(Qt::Key_Backspace);
    EXPECT_FALSE(canStart());
}

TEST_F(NotesSheetTest, OffersTheLastGoalAndStartsWithIt) {
    openWithLastGoal(u"Write report, Review"_s);
    ASSERT_TRUE(ui().click(u"Start session"_s));
    ASSERT_TRUE(controller().currentSession().has_value());
    EXPECT_EQ(controller().currentSession()->goal, u"Write report, Review"_s);
    EXPECT_FALSE(ui().has(u"Session Goal"_s));
}

TEST_F(NotesSheetTest, TakesWhatIsTyped) {
    openNotesSheet();
    EXPECT_TRUE(editorHasFocus());
    ui().type(u" Write "_s);
    EXPECT_EQ(view().sessionNotes()->sessionGoal(), u" Write "_s);
}

TEST_F(NotesSheetTest, KeepsANoBreakSpace) {
    openNotesSheet();
    ui().type(u"Read 20\u00a0pages"_s);
    EXPECT_EQ(view().sessionNotes()->sessionGoal(), u"Read 20\u00a0pages"_s);
}

TEST_F(NotesSheetTest, ShowsWhatLooksLikeMarkupAsItIs) {
    openWithLastGoal(u"<b>Write</b>"_s);
    EXPECT_EQ(ui().find(u"Session Goal"_s, QAccessible::EditableText)->property("text").toString(),
              u"<b>Write</b>"_s);
    ui().type(u"x"_s);
    EXPECT_TRUE(view().sessionNotes()->sessionGoal().contains(u"<b>Write</b>"_s));
}

TEST_F(NotesSheetTest, ShowsEmojiAndTextFromRightToLeft) {
    const QString goal = u"📚 לקרוא, كتابة التقرير 🧑‍💻"_s;
    openWithLastGoal(goal);
    EXPECT_FALSE(ui().picture().isNull());
    ASSERT_TRUE(ui().click(u"Start session"_s));
    EXPECT_EQ(controller().currentSession()->goal, goal);
}

TEST_F(NotesSheetTest, StartsWithAGoalOfAHundredKilobytes) {
    const QString goal = u"Write report, "_s.repeated(7'500);
    openWithLastGoal(goal);
    EXPECT_FALSE(ui().picture().isNull());
    ASSERT_TRUE(ui().click(u"Start session"_s));
    EXPECT_EQ(controller().currentSession()->goal, goal);
}

TEST_F(NotesSheetTest, LosesWhatWasTypedWhenClosed) {
    openNotesSheet();
    ui().type(u"Review"_s);
    ASSERT_TRUE(ui().click(u"Close"_s));
    EXPECT_FALSE(ui().has(u"Session Goal"_s));
    EXPECT_EQ(controller().loadLastGoal(), u""_s);
    EXPECT_FALSE(controller().currentSession().has_value());
    EXPECT_TRUE(ui().has(u"Session Setup"_s));
}

TEST_F(NotesSheetTest, LosesTheFocusATenthOfASecondAfterTheApplicationCameBack) {
    openNotesSheet();
    ASSERT_TRUE(editorHasFocus());
    center.post(notifications::didBecomeActive);
    passAndSettle(0.09);
    EXPECT_TRUE(editorHasFocus());
    passAndSettle(0.02);
    EXPECT_FALSE(editorHasFocus());
    ui().type(u"x"_s);
    EXPECT_EQ(view().sessionNotes()->sessionGoal(), u""_s);
}

TEST_F(NotesSheetTest, TakesTheFocusFromWhateverHasIt) {
    openNotesSheet();
    while (ui().focusedName() != u"Close"_s)
        ui().tab();
    center.post(notifications::didBecomeActive);
    passAndSettle(0.1);
    EXPECT_NE(ui().focusedName(), u"Close"_s);
    ui().key(Qt::Key_Space);
    EXPECT_TRUE(view().showSessionNotes());
}

TEST_F(NotesSheetTest, ShowsTheArrowAgainBesideTheCloseButton) {
    openNotesSheet();
    ASSERT_EQ(ui().cursorOver(u"Close"_s), Qt::PointingHandCursor);
    ui().hover(ui().find(u"Close"_s)->mapToScene(QPointF(-20, 11)));
    EXPECT_EQ(ui().view().cursor().shape(), Qt::ArrowCursor);
}

TEST_F(NotesSheetTest, IsReachedByTabAgainAfterItLostTheFocus) {
    openNotesSheet();
    center.post(notifications::didBecomeActive);
    passAndSettle(0.1);
    ui().tab();
    EXPECT_FALSE(ui().focusedName().isEmpty());
}

TEST_F(NotesSheetTest, IsReachedByTabHoweverOftenTheApplicationCameBack) {
    openNotesSheet();
    for (int times = 0; times < 6; ++times) {
        center.post(notifications::didBecomeActive);
        passAndSettle(0.1);
        EXPECT_FALSE(editorHasFocus());
    }
    ui().tab();
    EXPECT_FALSE(ui().focusedName().isEmpty());
    pressByTab(u"Close"_s);
    EXPECT_FALSE(view().showSessionNotes());
}

TEST_F(NotesSheetTest, DoesNothingOnTheKeysOfTheHint) {
    openWithLastGoal(u"Review"_s);
    for (const Qt::KeyboardModifier modifier : {Qt::ControlModifier, Qt::MetaModifier}) {
        ui().key(Qt::Key_Return, modifier);
        EXPECT_TRUE(view().showSessionNotes());
    }
    ui().key(Qt::Key_Escape);
    EXPECT_TRUE(view().showSessionNotes());
    EXPECT_FALSE(controller().currentSession().has_value());
}

TEST_F(NotesSheetTest, BreaksTheLineWithReturn) {
    openNotesSheet();
    ui().type(u"a"_s);
    ui().key(Qt::Key_Return);
    ui().type(u"b"_s);
    EXPECT_EQ(view().sessionNotes()->sessionGoal(), u"a\nb"_s);
}

TEST_F(NotesSheetTest, MovesOnWithTab) {
    openWithLastGoal(u"Review"_s);
    ui().tab();
    EXPECT_EQ(ui().focusedName(), u"Start session"_s);
    ui().tab();
    EXPECT_EQ(ui().focusedName(), u"Close"_s);
    ui().tab();
    EXPECT_TRUE(editorHasFocus());
    EXPECT_EQ(view().sessionNotes()->sessionGoal(), u"Review"_s);
}

TEST_F(NotesSheetTest, ShowsAHandOverTheStartButtonOnlyWithAGoal) {
    openNotesSheet();
    EXPECT_EQ(ui().cursorOver(u"Close"_s), Qt::PointingHandCursor);
    ui().type(u"R"_s);
    const QQuickItem &start = *ui().find(u"Start session"_s);
    const QPointF middle = start.mapToScene(QPointF(start.width() / 2, start.height() / 2));
    ui().hover(middle);
    EXPECT_EQ(ui().view().cursor().shape(), Qt::PointingHandCursor);
    ui().key(Qt::Key_Backspace);
    ui().hover(middle + QPointF(1, 1));
    EXPECT_EQ(ui().view().cursor().shape(), Qt::ArrowCursor);
}

TEST_F(NotesSheetTest, ShrinksTheStartButtonWithoutAGoal) {
    openWithLastGoal(u"R"_s);
    const QQuickItem &start = *ui().find(u"Start session"_s)->parentItem();
    EXPECT_EQ(start.scale(), 1.0);
    ui().key(Qt::Key_A, Qt::ControlModifier);
    ui().key(Qt::Key_Delete);
    EXPECT_TRUE(ui().waitUntil([&] { return qFuzzyCompare(start.scale(), 0.95); }));
}

} // namespace
} // namespace tarne::test
