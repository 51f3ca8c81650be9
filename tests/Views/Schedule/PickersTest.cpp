#include "DateStyles.h"
#include "ScheduleScreenFixture.h"

namespace tarne::test {
namespace {

/// The month calendar and the clock time, by keyboard and by assistive tools, in several locales.
class ThePickers : public ScheduleScreenTest {};

TEST_F(ThePickers, TheSelectedDayIsTheCheckedOneForAssistiveTools) {
    QAccessibleInterface *const day = ui().accessible(u"Monday, March 2, 2026"_s);
    ASSERT_NE(day, nullptr);
    EXPECT_EQ(day->role(), QAccessible::RadioButton);
    EXPECT_TRUE(day->state().checked);
    EXPECT_FALSE(ui().accessible(u"Tuesday, March 3, 2026"_s)->state().checked);
}

TEST_F(ThePickers, TheKeyboardMovesThroughTheCalendarAndKeepsTheFocus) {
    tabTo(u"Monday, March 2, 2026"_s);
    ui().key(Qt::Key_Right);
    EXPECT_EQ(ui().focusedName(), u"Tuesday, March 3, 2026"_s);
    ui().key(Qt::Key_Up);
    EXPECT_EQ(ui().focusedName(), u"Tuesday, February 24, 2026"_s);
    ui().key(Qt::Key_PageDown);
    EXPECT_EQ(ui().focusedName(), u"Tuesday, March 24, 2026"_s);
    ui().key(Qt::Key_Home);
    EXPECT_EQ(ui().focusedName(), u"Sunday, March 22, 2026"_s);
    ui().key(Qt::Key_End);
    EXPECT_EQ(ui().focusedName(), u"Saturday, March 28, 2026"_s);
    EXPECT_TRUE(ui().findText(u"March 28, 2026"_s));
    ui().tab();
    EXPECT_FALSE(ui().focusedName().contains(u"March"_s));
}

TEST_F(ThePickers, TheSheetsTimeIsTypedFieldByField) {
    openSheet();
    tabTo(u"Hour"_s);
    ui().type(u"9"_s);
    EXPECT_EQ(ui().focusedName(), u"Minute"_s);
    ui().type(u"45"_s);
    EXPECT_EQ(ui().focusedName(), u"Half of the day"_s);
    ui().type(u"p"_s);
    EXPECT_EQ(controller().selectedTime(), at(2, 21, 45));
    ui().key(Qt::Key_Left);
    ui().key(Qt::Key_Up);
    EXPECT_EQ(controller().selectedTime(), at(2, 21, 46));
}

TEST_F(ThePickers, AssistiveToolsReadAndChangeTheFieldsOfTheTime) {
    openSheet();
    QAccessibleInterface *const minute = ui().accessible(u"Minute"_s);
    ASSERT_NE(minute, nullptr);
    EXPECT_EQ(minute->role(), QAccessible::SpinBox);
    ASSERT_NE(minute->valueInterface(), nullptr);
    EXPECT_EQ(minute->valueInterface()->currentValue().toInt(), 0);
    EXPECT_EQ(minute->valueInterface()->maximumValue().toInt(), 59);
    minute->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(controller().selectedTime(), at(2, 10, 1));
}

TEST_F(ThePickers, AssistiveToolsPickADay) {
    QAccessibleInterface *const day = ui().accessible(u"Friday, March 20, 2026"_s);
    ASSERT_NE(day, nullptr);
    ASSERT_NE(day->actionInterface(), nullptr);
    day->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    draw();
    EXPECT_EQ(controller().selectedDate(), at(20, 10));
    EXPECT_TRUE(ui().accessible(u"Friday, March 20, 2026"_s)->state().checked);
}

TEST_F(ThePickers, BlankPlacesAndPastDaysAreNoButtonsForAssistiveTools) {
    const QStringList days = ui().names(QAccessible::RadioButton);
    EXPECT_EQ(days.size(), 31);
    openSheet();
    QAccessibleInterface *const past = ui().accessible(u"Sunday, March 1, 2026"_s);
    ASSERT_NE(past, nullptr);
    EXPECT_FALSE(ui().isEnabled(u"Sunday, March 1, 2026"_s));
    ASSERT_NE(past->actionInterface(), nullptr);
    past->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(controller().selectedDate(), at(2, 10));
}

TEST_F(ThePickers, ThePageButtonsTurnTheMonthAndLeaveTheSelection) {
    click(u"Next month"_s, QAccessible::Button);
    EXPECT_TRUE(ui().findText(u"April 2026"_s));
    EXPECT_EQ(controller().selectedDate(), at(2, 10));
    tabTo(u"Wednesday, April 1, 2026"_s); // The stop where the selected day is not shown.
    ui().key(Qt::Key_Space);
    EXPECT_TRUE(ui().findText(u"April 1, 2026"_s));
}

TEST_F(ThePickers, ThePageButtonsLeaveTheDaysKeysAlone) {
    tabTo(u"Next month"_s);
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp,
                              Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End}) {
        ui().key(key);
        EXPECT_EQ(ui().focusedName(), u"Next month"_s);
        EXPECT_EQ(controller().selectedDate(), at(2, 10));
    }
    EXPECT_TRUE(ui().findText(u"March 2026"_s));
}

TEST_F(ThePickers, AMonthTurnedUnderTheFocusedDayLeavesTheFocusOnADay) {
    controller().setSelectedDate(at(31, 12));
    tabTo(u"Tuesday, March 31, 2026"_s);
    click(u"Previous month"_s, QAccessible::Button); // Which has no such day.
    EXPECT_EQ(ui().focusedName(), u"Sunday, February 1, 2026"_s);
}

TEST_F(ThePickers, ADayPickedByThePointerTakesTheFocusAlongWhereADayHasIt) {
    tabTo(u"Monday, March 2, 2026"_s);
    click(u"Friday, March 20, 2026"_s);
    EXPECT_EQ(ui().focusedName(), u"Friday, March 20, 2026"_s);
    ui().key(Qt::Key_Left);
    EXPECT_EQ(ui().focusedName(), u"Thursday, March 19, 2026"_s);
}

TEST_F(ThePickers, ALimitedCalendarStopsTheKeyboardAtToday) {
    openSheet();
    tabTo(u"Monday, March 2, 2026"_s);
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Up, Qt::Key_PageUp, Qt::Key_Home}) {
        ui().key(key);
        EXPECT_EQ(ui().focusedName(), u"Monday, March 2, 2026"_s);
    }
    ui().key(Qt::Key_PageDown);
    EXPECT_EQ(ui().focusedName(), u"Thursday, April 2, 2026"_s);
}

TEST_F(ThePickers, WeeksBeginAsInTheLocale) {
    useLocale(u"de_DE"_s);
    tabTo(u"Montag, 2. März 2026"_s);
    ui().key(Qt::Key_End);
    EXPECT_EQ(ui().focusedName(), u"Sonntag, 8. März 2026"_s);
    ui().key(Qt::Key_Home);
    EXPECT_EQ(ui().focusedName(), u"Montag, 2. März 2026"_s);
    EXPECT_TRUE(ui().findText(u"März 2026"_s));
    EXPECT_LT(ui().find(u"Mo"_s)->mapToScene({}).x(), ui().find(u"So"_s)->mapToScene({}).x());
}

TEST_F(ThePickers, DaysRunFromRightToLeftWhereTextDoes) {
    useLocale(u"ar_EG"_s);
    const auto name = [](int day) {
        return DateStyles(QLocale(u"ar_EG"_s))
            .text(DateStyles::Style::FullDate, QDate(2026, 3, day));
    };
    tabTo(name(2));
    ui().key(Qt::Key_Left);
    EXPECT_EQ(ui().focusedName(), name(3));
    EXPECT_LT(ui().find(name(3))->mapToScene({}).x(), ui().find(name(2))->mapToScene({}).x());
    ui().key(Qt::Key_Right);
    EXPECT_EQ(ui().focusedName(), name(2));
}

TEST_F(ThePickers, AClockOfTwentyFourHoursHasTwoFields) {
    useLocale(u"de_DE"_s);
    openSheet();
    EXPECT_FALSE(ui().has(u"Half of the day"_s));
    tabTo(u"Hour"_s);
    ui().type(u"17"_s);
    EXPECT_EQ(ui().focusedName(), u"Minute"_s);
    ui().type(u"5"_s);
    EXPECT_EQ(controller().selectedTime(), at(2, 17, 5));
}

TEST_F(ThePickers, TheTimesHalfOfTheDayStandsAtTheLeftWhereTextRunsFromRightToLeft) {
    useLocale(u"ar_EG"_s);
    openSheet();
    tabTo(u"Hour"_s);
    EXPECT_LT(ui().find(u"Half of the day"_s)->mapToScene({}).x(),
              ui().find(u"Hour"_s)->mapToScene({}).x());
    ui().key(Qt::Key_Left);
    EXPECT_EQ(ui().focusedName(), u"Half of the day"_s);
    ui().key(Qt::Key_Down);
    EXPECT_EQ(controller().selectedTime(), at(2, 22));
}

TEST_F(ThePickers, TheKeyboardStepsThroughTheFieldsOfTheTime) {
    openSheet();
    tabTo(u"Hour"_s);
    ui().key(Qt::Key_Right);
    EXPECT_EQ(ui().focusedName(), u"Minute"_s);
    const auto after = [this](Qt::Key key) {
        ui().key(key);
        return controller().selectedTime();
    };
    EXPECT_EQ(after(Qt::Key_Up), at(2, 10, 1));
    EXPECT_EQ(after(Qt::Key_Down), at(2, 10, 0));
    EXPECT_EQ(after(Qt::Key_PageUp), at(2, 10, 10));
    EXPECT_EQ(after(Qt::Key_PageDown), at(2, 10, 0));
    EXPECT_EQ(after(Qt::Key_End), at(2, 10, 59));
    EXPECT_EQ(after(Qt::Key_Home), at(2, 10, 0));
    ui().key(Qt::Key_Left);
    EXPECT_EQ(ui().focusedName(), u"Hour"_s);
    ui().backtab();
    EXPECT_FALSE(ui().focusedName() == u"Minute"_s);
}

TEST_F(ThePickers, TheTimeAsAWholeIsReadToAssistiveTools) {
    openSheet();
    EXPECT_TRUE(ui().has(u"10:00 AM"_s, QAccessible::Grouping));
}

} // namespace
} // namespace tarne::test
