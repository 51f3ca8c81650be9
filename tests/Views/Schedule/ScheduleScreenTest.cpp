#include "ScheduleScreenFixture.h"
#include "ScheduledGoal.h"
#include "TARNEStyle.h"

namespace tarne::test {
namespace {

/// The header, the counters and the goals of the day.
class ScheduleScreen : public ScheduleScreenTest {};

TEST_F(ScheduleScreen, ShowsItsTextsOnAnEmptyDay) {
    for (const QString &text :
         {u"Schedule"_s, u"Plan your focus sessions"_s, u"Calendar"_s, u"Overview"_s,
          u"Today's Goals"_s, u"Upcoming"_s, u"0 scheduled"_s, u"March 2, 2026"_s,
          u"0 goals scheduled"_s, u"No goals scheduled"_s,
          u"Add your first goal to get started with focused work sessions"_s, u"March 2026"_s})
        EXPECT_TRUE(texts().contains(text)) << qPrintable(text);
    for (const QString &button : {u"New Goal"_s, u"Add Goal"_s, u"Close schedule"_s})
        EXPECT_TRUE(ui().has(button, QAccessible::Button)) << qPrintable(button);
}

TEST_F(ScheduleScreen, BothAddButtonsOpenTheSheet) {
    for (const QString &button : {u"New Goal"_s, u"Add Goal"_s}) {
        click(button, QAccessible::Button);
        EXPECT_TRUE(view().showingAddGoal());
        EXPECT_TRUE(ui().has(u"New Goal"_s, QAccessible::Dialog));
        click(u"Cancel"_s, QAccessible::Button);
        EXPECT_FALSE(view().showingAddGoal());
    }
}

TEST_F(ScheduleScreen, TheCloseButtonClosesIt) {
    click(u"Close schedule"_s, QAccessible::Button);
    EXPECT_FALSE(m_stage.isPresented.value());
}

TEST_F(ScheduleScreen, ADayPickedInTheCalendarIsShownInThePane) {
    add(20, 12, u"Far off"_s);
    controller().setSelectedDate(at(2, 12));
    draw();
    EXPECT_FALSE(ui().has(u"Far off"_s));
    click(u"Friday, March 20, 2026"_s);
    EXPECT_TRUE(ui().findText(u"Far off"_s));
    EXPECT_TRUE(ui().findText(u"March 20, 2026"_s));
}

TEST_F(ScheduleScreen, PastDaysCanBePicked) {
    click(u"Previous month"_s, QAccessible::Button);
    click(u"Monday, February 2, 2026"_s);
    EXPECT_TRUE(ui().findText(u"February 2, 2026"_s));
}

TEST_F(ScheduleScreen, EveryGoalShowsItsTimeAndThatAReminderIsSet) {
    m_stage.fakes.notifications.error = u"refused"_s;
    add(2, 14, u"Write"_s);
    for (const QString &text :
         {u"Write"_s, u"2:00 PM"_s, u"1h before"_s, u"Reminder set"_s, u"1 goals scheduled"_s})
        EXPECT_TRUE(texts().contains(text)) << qPrintable(text);
    EXPECT_FALSE(ui().has(u"No goals scheduled"_s));
}

TEST_F(ScheduleScreen, AGoalsTextIsNeverMarkup) {
    add(2, 14, u"<b>a</b> & \"b\"\nline"_s);
    EXPECT_TRUE(ui().findText(u"<b>a</b> & \"b\"\nline"_s));
    QQuickItem *const text = ui().find(u"<b>a</b> & \"b\"\nline"_s);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->property("textFormat").toInt(), 0); // Text.PlainText
}

TEST_F(ScheduleScreen, EmojiInAGoalAreOfTheEmojiFontOnEveryMachine) {
    add(2, 14, u"Watch ⏱️"_s);
    const auto fontOfGoal = [this] {
        return ui().find(u"Watch ⏱️"_s)->property("font").value<QFont>();
    };
    EXPECT_EQ(fontOfGoal(), TARNEStyle::Typography::system(16));
    click(u"Mark as done: Watch ⏱️"_s);
    QFont done = TARNEStyle::Typography::system(16);
    done.setStrikeOut(true);
    EXPECT_EQ(fontOfGoal(), done);
}

TEST_F(ScheduleScreen, NoKeyDeletesAGoalWhoseTextHoldsAnAmpersand) {
    add(2, 14, u"R&D notes"_s);
    ASSERT_TRUE(ui().has(u"Delete R&D notes"_s, QAccessible::Button));
    EXPECT_EQ(ui().mnemonics(), QString());
    EXPECT_TRUE(ui().has(u"R&D notes"_s));
    openSheet();
    EXPECT_EQ(ui().mnemonics(), QString());
}

TEST_F(ScheduleScreen, ATextOfAHundredKilobytesIsShown) {
    const QString text = u"long text "_s.repeated(10'000);
    add(2, 14, text);
    EXPECT_TRUE(ui().has(u"2:00 PM"_s));
    EXPECT_TRUE(ui().findText(text));
}

TEST_F(ScheduleScreen, TheTickStrikesTheTextOutAndTakesTheGoalFromTheUpcomingCount) {
    add(2, 14, u"Write"_s);
    EXPECT_EQ(texts().count(u"1 scheduled"_s), 2);
    click(u"Mark as done: Write"_s, QAccessible::Button);
    EXPECT_TRUE(ui().find(u"Write"_s)->property("font").value<QFont>().strikeOut());
    EXPECT_EQ(texts().count(u"1 scheduled"_s), 1);
    EXPECT_EQ(texts().count(u"0 scheduled"_s), 1);
    click(u"Mark as open: Write"_s, QAccessible::Button);
    EXPECT_FALSE(ui().find(u"Write"_s)->property("font").value<QFont>().strikeOut());
}

TEST_F(ScheduleScreen, DeletingTheLastGoalOfTheDayBringsBackTheEmptyState) {
    add(2, 14, u"Write"_s);
    click(u"Delete Write"_s, QAccessible::Button);
    EXPECT_FALSE(ui().has(u"Write"_s));
    EXPECT_TRUE(ui().has(u"No goals scheduled"_s));
}

TEST_F(ScheduleScreen, ListsTheGoalsInTheOrderOfTheirStarts) {
    add(2, 16, u"third"_s);
    add(2, 9, u"first"_s);
    add(2, 12, u"second"_s);
    double y = 0;
    for (const QString &text : {u"first"_s, u"second"_s, u"third"_s}) {
        const QQuickItem *const item = ui().findText(text);
        ASSERT_NE(item, nullptr);
        EXPECT_GT(item->mapToScene({}).y(), y);
        y = item->mapToScene({}).y();
    }
}

TEST_F(ScheduleScreen, TheCountersStayWithTodayWhateverDayIsSelected) {
    add(2, 9, u"past"_s);
    add(2, 23, u"tonight"_s);
    click(u"Friday, March 20, 2026"_s);
    EXPECT_TRUE(texts().contains(u"2 scheduled"_s)); // Of today.
    EXPECT_TRUE(texts().contains(u"1 scheduled"_s)); // Still to come.
    EXPECT_TRUE(texts().contains(u"0 goals scheduled"_s));
}

TEST_F(ScheduleScreen, ACounterStandsSmallUnderItsLabelAndLargeAtTheRight) {
    add(2, 23, u"tonight"_s);
    EXPECT_EQ(texts().count(u"1 scheduled"_s), 2);
    EXPECT_EQ(texts().count(u"1"_s), 2);
}

TEST_F(ScheduleScreen, TheCirclesOfDoneAndOpenGoalsHaveTheirColours) {
    add(2, 14, u"Write"_s);
    QQuickItem *circle = ui().find(u"Mark as done: Write"_s);
    ASSERT_NE(circle, nullptr);
    EXPECT_EQ(circle->property("symbol"), u"circle"_s);
    EXPECT_EQ(circle->property("color").value<QColor>(), QColor(u"#D1D5DB"_s));
    EXPECT_EQ(ui().find(u"Write"_s)->property("color").value<QColor>(), QColor(u"#1F2937"_s));
    click(u"Mark as done: Write"_s);
    circle = ui().find(u"Mark as open: Write"_s);
    ASSERT_NE(circle, nullptr);
    EXPECT_EQ(circle->property("symbol"), u"checkmark.circle.fill"_s);
    EXPECT_EQ(circle->property("color").value<QColor>(), QColor(u"#059669"_s));
    EXPECT_EQ(ui().find(u"Write"_s)->property("color").value<QColor>(), QColor(u"#6B7280"_s));
}

TEST_F(ScheduleScreen, AGoalIsTickedOffAndDeletedByTheKeyboard) {
    add(2, 14, u"Write"_s);
    tabTo(u"Mark as done: Write"_s);
    ui().key(Qt::Key_Space);
    EXPECT_EQ(ui().focusedName(), u"Mark as open: Write"_s);
    EXPECT_TRUE(controller().scheduledGoals().front().isCompleted);
    tabTo(u"Delete Write"_s);
    ui().key(Qt::Key_Return);
    EXPECT_THAT(controller().scheduledGoals(), testing::IsEmpty());
}

TEST_F(ScheduleScreen, TheKeyboardReachesGoalsBeyondThePanesEnd) {
    for (int i = 0; i < 24; ++i)
        m_stage.add(2, i, 0, u"Goal %1"_s.arg(i));
    draw();
    EXPECT_TRUE(ui().has(u"24 goals scheduled"_s));
    EXPECT_FALSE(ui().has(u"Delete Goal 23"_s));
    for (int i = 0; i < 24; ++i) {
        tabTo(u"Delete Goal %1"_s.arg(i));
        draw();
        const QQuickItem *const item = ui().find(u"Delete Goal %1"_s.arg(i));
        ASSERT_NE(item, nullptr);
        EXPECT_LE(item->mapToScene(QPointF(0, item->height())).y(), 700);
    }
}

TEST_F(ScheduleScreen, GoalsStoredBeforeAreShownAtOnce) {
    m_stage.fakes.defaults.setObject(u"ScheduledGoals"_s,
                                     *encodeScheduledGoals({{at(2, 9), at(2, 15), u"stored"_s}}));
    draw();
    EXPECT_TRUE(ui().findText(u"stored"_s));
    EXPECT_TRUE(ui().findText(u"3:00 PM"_s));
}

TEST_F(ScheduleScreen, WritesDatesAndTimesInTheLocale) {
    useLocale(u"de_DE"_s);
    add(2, 14, u"Schreiben"_s);
    EXPECT_TRUE(ui().findText(u"2. März 2026"_s));
    EXPECT_TRUE(ui().findText(u"14:00"_s));
    EXPECT_TRUE(ui().findText(u"1 goals scheduled"_s));
}

TEST_F(ScheduleScreen, RunsFromLeftToRightInEveryLocale) {
    useLocale(u"ar_EG"_s);
    const QString goal = u"كتابة التقرير"_s;
    add(2, 14, goal);
    for (const QString &words : {u"٢:٠٠ م"_s, goal}) {
        const QQuickItem *const text = ui().findText(words);
        ASSERT_NE(text, nullptr) << qPrintable(words);
        EXPECT_EQ(text->property("effectiveHorizontalAlignment").toInt(), int(Qt::AlignLeft));
    }
    EXPECT_EQ(ui().find(u"٢:٠٠ م"_s)->mapToScene({}).x(),
              ui().find(u"1h before"_s)->mapToScene({}).x());
}

TEST_F(ScheduleScreen, HasItsGroundsRulesAndSizes) {
    add(2, 14, u"Write"_s);
    EXPECT_EQ(ui().find(u"Close schedule"_s)->size(), QSizeF(44, 44));
    EXPECT_EQ(ui().find(u"Delete Write"_s)->size(), QSizeF(32, 32));
    EXPECT_EQ(ui().findText(u"Schedule"_s)->mapToScene({}).x(), 24);
    EXPECT_EQ(colorAt(3, 3), QColor(Qt::white));        // The header,
    EXPECT_EQ(colorAt(3, 690), QColor(Qt::white));      // the sidebar,
    EXPECT_EQ(colorAt(420, 690), QColor(u"#E5E7EB"_s)); // the rule,
    EXPECT_EQ(colorAt(422, 120), QColor(Qt::white));    // the pane's header
    EXPECT_EQ(colorAt(422, 690), QColor(u"#FAFAFA"_s)); // and its ground.
    EXPECT_TRUE(comesToShow(u"Delete Write"_s, QColor(u"#FEF2F2"_s)));
}

} // namespace
} // namespace tarne::test
