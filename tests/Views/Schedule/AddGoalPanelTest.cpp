#include "ScheduleScreenFixture.h"
#include "TARNEStyle.h"
#include "TextLook.h"

#include <algorithm>

namespace tarne::test {
namespace {

/// The sheet over the screen.
class TheAddGoalSheet : public ScheduleScreenTest {};

TEST_F(TheAddGoalSheet, ShowsItsTextsAndFocusesTheGoalField) {
    openSheet();
    for (const QString &text : {u"New Goal"_s, u"Schedule a focus session"_s, u"Date"_s, u"Time"_s,
                                u"Goal"_s, u"Reminder"_s, u"1 hour before"_s})
        EXPECT_TRUE(texts().contains(text)) << qPrintable(text);
    EXPECT_EQ(ui().focusedName(), u"What do you want to focus on?"_s);
    EXPECT_TRUE(view().addGoalSheet()->isGoalTextFocused());
}

TEST_F(TheAddGoalSheet, TypingAVisibleCharacterEnablesTheScheduleButton) {
    openSheet();
    EXPECT_FALSE(ui().find(u"Schedule Goal"_s)->isEnabled());
    ui().type(u"  "_s);
    EXPECT_FALSE(ui().find(u"Schedule Goal"_s)->isEnabled());
    ui().type(u"a"_s);
    EXPECT_TRUE(ui().find(u"Schedule Goal"_s)->isEnabled());
}

TEST_F(TheAddGoalSheet, StoresAGoalExactlyAsItWasTyped) {
    const QString text = u"  Read 20\u00a0pages "_s;
    openSheet();
    ui().type(text);
    EXPECT_EQ(controller().goalText(), text);
    ui().key(Qt::Key_Left);
    ui().type(u"!"_s); // The caret has stayed where it was.
    click(u"Schedule Goal"_s, QAccessible::Button);
    EXPECT_EQ(controller().scheduledGoals().front().goal, u"  Read 20\u00a0pages! "_s);
}

TEST_F(TheAddGoalSheet, ADisabledScheduleButtonDoesNothing) {
    openSheet();
    ui().type(u"   "_s);
    QQuickItem *const button = ui().find(u"Schedule Goal"_s);
    ui().clickAt(button->mapToScene(button->boundingRect().center()));
    EXPECT_TRUE(view().showingAddGoal());
    EXPECT_TRUE(controller().scheduledGoals().empty());
}

TEST_F(TheAddGoalSheet, SchedulingShowsTheNewGoalInThePane) {
    openSheet();
    ui().type(u"Write"_s);
    click(u"Schedule Goal"_s, QAccessible::Button);
    EXPECT_FALSE(ui().has(u"New Goal"_s, QAccessible::Dialog));
    EXPECT_TRUE(ui().findText(u"Write"_s));
}

TEST_F(TheAddGoalSheet, CancellingAndClosingKeepTheTextForTheNextTime) {
    openSheet();
    ui().type(u"Wri"_s);
    click(u"Cancel"_s, QAccessible::Button);
    openSheet();
    ui().type(u"te"_s);
    click(u"Close"_s, QAccessible::Button);
    EXPECT_FALSE(view().showingAddGoal());
    EXPECT_EQ(controller().goalText(), u"Write"_s);
}

TEST_F(TheAddGoalSheet, ItsCalendarReachesNoPastDay) {
    controller().setSelectedDate(at(1, 12));
    draw();
    openSheet();
    EXPECT_FALSE(ui().find(u"Sunday, March 1, 2026"_s)->isEnabled());
    EXPECT_TRUE(ui().find(u"Monday, March 2, 2026"_s)->isEnabled());
    EXPECT_FALSE(ui().find(u"Previous month"_s)->isEnabled());
    EXPECT_EQ(controller().selectedDate(), at(1, 12));
    tabTo(u"Monday, March 2, 2026"_s); // Which brings the calendar into view.
    click(u"Tuesday, March 10, 2026"_s);
    EXPECT_EQ(controller().selectedDate(), at(10, 12));
}

TEST_F(TheAddGoalSheet, TheGoalFieldGrowsFromThreeToEightLines) {
    openSheet();
    const auto heightOfLines = [this](int lines) {
        controller().setGoalText(u"a\n"_s.repeated(lines - 1) + u'a');
        draw();
        return goalField()->parentItem()->parentItem()->height();
    };
    const double one = heightOfLines(1);
    EXPECT_EQ(heightOfLines(3), one);
    EXPECT_GT(heightOfLines(4), one);
    EXPECT_GT(heightOfLines(8), heightOfLines(7));
    EXPECT_EQ(heightOfLines(9), heightOfLines(8));
    EXPECT_EQ(heightOfLines(100), heightOfLines(8));
}

TEST_F(TheAddGoalSheet, TheGoalFieldIsEightyHighAtLeastHoweverSmallItsText) {
    openSheet();
    QQuickItem *const field = goalField()->parentItem()->parentItem();
    EXPECT_GT(field->height(), 80) << "three lines of its own text";
    field->setProperty("font", TARNEStyle::Typography::system(8));
    draw();
    EXPECT_EQ(field->height(), 80);
}

TEST_F(TheAddGoalSheet, EscapeClosesNothing) {
    openSheet();
    ui().key(Qt::Key_Escape);
    EXPECT_TRUE(view().showingAddGoal());
}

TEST_F(TheAddGoalSheet, CancellingKeepsDayAndTimeToo) {
    openSheet();
    tabTo(u"Monday, March 2, 2026"_s);
    ui().key(Qt::Key_Down);
    tabTo(u"Hour"_s);
    ui().type(u"4"_s);
    click(u"Cancel"_s);
    EXPECT_TRUE(ui().findText(u"March 9, 2026"_s));
    openSheet();
    EXPECT_TRUE(ui().accessible(u"Monday, March 9, 2026"_s)->state().checked);
    EXPECT_EQ(ui().accessible(u"Hour"_s)->valueInterface()->currentValue().toInt(), 4);
}

TEST_F(TheAddGoalSheet, APastDayStaysSelectedUntilAnotherIsPicked) {
    controller().setSelectedDate(at(1, 12));
    openSheet();
    ui().type(u"Write"_s);
    click(u"Schedule Goal"_s);
    EXPECT_TRUE(ui().findText(u"March 1, 2026"_s));
    EXPECT_TRUE(ui().findText(u"Write"_s));
}

TEST_F(TheAddGoalSheet, ShowsSymbolGradientAndShadowWithTheFirstVisibleCharacter) {
    openSheet();
    const auto hasSymbol = [this] {
        const auto items = ui().find(u"Schedule Goal"_s)->findChildren<QQuickItem *>();
        return std::ranges::any_of(items, [](const QQuickItem *item) {
            return item->property("symbol") == u"calendar.badge.plus"_s && item->isVisible() &&
                   item->property("size").isValid();
        });
    };
    EXPECT_TRUE(comesToShow(u"Schedule Goal"_s, QColor(u"#D1D5DB"_s)));
    EXPECT_FALSE(hasSymbol());
    ui().type(u"a"_s);
    EXPECT_TRUE(hasSymbol());
    const QQuickItem *const button = ui().find(u"Schedule Goal"_s);
    const QPoint top = button->mapToScene(QPointF(button->width() / 2, 1)).toPoint();
    const QPoint below = button->mapToScene(QPointF(button->width() / 2, 51)).toPoint();
    EXPECT_TRUE(ui().waitUntil([&] {
        const QColor color = colorAt(top.x(), top.y());
        return color.blue() > 220 && color.red() < 85;
    }));
    EXPECT_NE(colorAt(below.x(), below.y()), QColor(Qt::white));
    ui().key(Qt::Key_Backspace);
    EXPECT_TRUE(comesToShow(u"Schedule Goal"_s, QColor(u"#D1D5DB"_s)));
    EXPECT_EQ(colorAt(below.x(), below.y()), QColor(Qt::white));
    EXPECT_TRUE(ui().waitUntil([&] { return !hasSymbol(); }));
}

TEST_F(TheAddGoalSheet, TheRuleUnderTheFieldIsThickAndIndigoWhileItHasTheFocus) {
    m_size = QSize(900, 840);
    openSheet();
    const QQuickItem *const field = goalField();
    ui().type(u"a"_s); // Brings the field into view.
    EXPECT_TRUE(ui().waitUntil(
        [&] { return field->mapToScene(QPointF(0, field->height())).y() < 840 - 16 - 96 - 2; }));
    const QPoint rule = field->mapToScene(QPointF(200, field->height())).toPoint();
    EXPECT_TRUE(ui().waitUntil([&] {
        return colorAt(rule.x(), rule.y()) == QColor(u"#4F46E5"_s) &&
               colorAt(rule.x(), rule.y() + 1) == QColor(u"#4F46E5"_s);
    }));
    ui().tab();
    EXPECT_FALSE(view().addGoalSheet()->isGoalTextFocused());
    EXPECT_TRUE(ui().waitUntil([&] {
        return colorAt(rule.x(), rule.y()) == QColor(u"#E1E5E9"_s) &&
               colorAt(rule.x(), rule.y() + 1) == QColor(u"#FAFAFA"_s);
    }));
}

TEST_F(TheAddGoalSheet, HasItsSize) {
    m_size = QSize(900, 840);
    openSheet();
    EXPECT_EQ(ui().find(u"New Goal"_s, QAccessible::Dialog)->size(), QSizeF(650, 800));
    for (const QString &name : {u"Cancel"_s, u"Schedule Goal"_s})
        EXPECT_EQ(ui().find(name)->size(), QSizeF((650 - 2 * 24 - 16) / 2.0, 48));
    EXPECT_EQ(ui().find(u"Close"_s)->size(), QSizeF(44, 44));
}

TEST_F(TheAddGoalSheet, FitsIntoALowWindow) {
    m_size = QSize(900, 500);
    openSheet();
    EXPECT_EQ(ui().find(u"New Goal"_s, QAccessible::Dialog)->height(), 500 - 32);
    ui().type(u"Write"_s);
    click(u"Schedule Goal"_s);
    EXPECT_FALSE(hasSheet());
}

TEST_F(TheAddGoalSheet, OpensAtItsDateAndGoesToTheFieldWithTheFirstKey) {
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_Left}) {
        m_size = QSize(900, 700);
        openSheet();
        (void)ui().picture();
        const QRectF date = placeOf(*ui().findText(u"Date"_s));
        const QRectF head = placeOf(*ui().find(u"Schedule a focus session"_s));
        const QRectF foot = placeOf(*ui().find(u"Cancel"_s));
        EXPECT_GT(date.top(), head.bottom());
        EXPECT_EQ(ui().view().activeFocusItem(), goalField());
        EXPECT_GT(placeOf(*goalField()).bottom(), foot.top()) << "there is more than has room";
        if (key == Qt::Key_A)
            ui().type(u"ab"_s);
        else
            ui().key(key);
        EXPECT_TRUE(ui().waitUntil([&] {
            const QRectF caret =
                goalField()->mapRectToScene(goalField()->property("cursorRectangle").toRectF());
            return caret.bottom() <= foot.top() - 24;
        }));
        click(u"Cancel"_s);
    }
}

TEST_F(TheAddGoalSheet, ReturnsTheFocusToTheButtonThatOpenedIt) {
    tabTo(u"New Goal"_s);
    ui().key(Qt::Key_Space);
    draw();
    EXPECT_EQ(ui().focusedName(), u"What do you want to focus on?"_s);
    tabTo(u"Cancel"_s);
    ui().key(Qt::Key_Space);
    EXPECT_EQ(ui().focusedName(), u"New Goal"_s);
}

TEST_F(TheAddGoalSheet, LeavesTheFocusToTheNewGoalWhereTheButtonThatOpenedItIsGone) {
    tabTo(u"Add Goal"_s);
    ui().key(Qt::Key_Space);
    draw();
    EXPECT_EQ(ui().focusedName(), u"What do you want to focus on?"_s);
    ui().type(u"Write"_s);
    tabTo(u"Schedule Goal"_s);
    ui().key(Qt::Key_Space);
    draw();
    EXPECT_EQ(ui().focusedName(), u"Mark as done: Write"_s);
    ui().tab();
    EXPECT_EQ(ui().focusedName(), u"Delete Write"_s);
    ui().key(Qt::Key_Space);
    draw();
    EXPECT_EQ(ui().focusedName(), u"March 2, 2026"_s);
}

TEST_F(TheAddGoalSheet, IsUsedByTheKeyboardAlone) {
    tabTo(u"New Goal"_s);
    ui().key(Qt::Key_Return);
    ui().type(u"Write"_s);
    tabTo(u"Monday, March 2, 2026"_s);
    ui().key(Qt::Key_Right);
    tabTo(u"Hour"_s);
    ui().type(u"3"_s);
    tabTo(u"Schedule Goal"_s);
    ui().key(Qt::Key_Return);
    draw();
    EXPECT_TRUE(ui().findText(u"March 3, 2026"_s));
    EXPECT_TRUE(ui().findText(u"3:00 AM"_s));
}

TEST_F(TheAddGoalSheet, TakesATextOfAHundredKilobytesWithMarkupAndLineFeeds) {
    const QString text = u"<b>a</b> \"q\" & line\n"_s.repeated(5'000);
    openSheet();
    controller().setGoalText(text);
    click(u"Schedule Goal"_s);
    ASSERT_THAT(controller().scheduledGoals(), testing::SizeIs(1));
    EXPECT_EQ(controller().scheduledGoals().front().goal, text);
    EXPECT_FALSE(hasSheet());
}

} // namespace
} // namespace tarne::test
