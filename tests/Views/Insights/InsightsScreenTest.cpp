#include "InsightsScreenFixture.h"
#include "TextLook.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tarne;
using namespace Qt::StringLiterals;

using test::InsightsScreenTest;

TEST_F(InsightsScreenTest, TheSamplesFillItsCards) {
    view().appear();
    const QStringList names = screen().names();
    for (const QString &text : {u"Insights"_s,
                                u"Discover patterns and trends in your focus sessions"_s,
                                u"Focus Streak"_s,
                                u"Current Streak"_s,
                                u"Longest Streak"_s,
                                u"Goal Completion Trends"_s,
                                u"Completed"_s,
                                u"67%"_s,
                                u"Partially Completed"_s,
                                u"33%"_s,
                                u"Not Completed"_s,
                                u"0%"_s,
                                u"Most Productive Times"_s,
                                u"Morning"_s,
                                u"Afternoon"_s,
                                u"100%"_s,
                                u"Evening"_s,
                                u"Night"_s,
                                u"Your Focus Journey"_s,
                                u"Past year of Stillhour sessions"_s,
                                u"Mon"_s,
                                u"Wed"_s,
                                u"Fri"_s,
                                u"Less"_s,
                                u"More"_s,
                                u"6 sessions in the last year"_s})
        EXPECT_TRUE(names.contains(text)) << qPrintable(text);
    EXPECT_EQ(names.count(u"Last 30 days"_s), 2);
    EXPECT_EQ(names.count(u"days"_s), 2);
}

TEST_F(InsightsScreenTest, ATickThatChangesNoFigureKeepsItsRows) {
    view().appear();
    const QPointer<QQuickItem> row = screen().find(u"Morning"_s);
    ASSERT_TRUE(row);
    start(u"Write"_s, 1500.0);
    pass(2);
    screen().settle();
    EXPECT_TRUE(row);
}

TEST_F(InsightsScreenTest, LabelsStayPluralAtOne) {
    controller().saveSessionHistory({{.sessionDate = time.now(), .goals = {}, .duration = 0}});
    view().appear();
    EXPECT_TRUE(screen().has(u"1 sessions in the last year"_s));
    EXPECT_EQ(screen().names().count(u"days"_s), 2) << "of the current streak and of the longest";
}

TEST_F(InsightsScreenTest, TheHeatMapIsOneItemOfFixedSize) {
    view().appear();
    const auto grids = screen().root()->findChildren<HeatmapGrid *>();
    ASSERT_EQ(grids.size(), 1);
    EXPECT_EQ(grids[0]->size(), QSizeF(882, 117));
    EXPECT_TRUE(grids[0]->childItems().isEmpty());
}

TEST_F(InsightsScreenTest, ThereIsNothingToPress) {
    view().appear();
    EXPECT_EQ(screen().names(QAccessible::Button), QStringList());
}

TEST_F(InsightsScreenTest, TheKeyboardsOneStopHasItsName) {
    view().appear();
    screen().tab();
    EXPECT_EQ(screen().focusedName(), u"Insights"_s);
    const QAccessible::State state =
        QAccessible::queryAccessibleInterface(screen().view().activeFocusItem())->state();
    EXPECT_TRUE(state.focusable && state.focused);
    const QQuickItem *const stop = screen().view().activeFocusItem();
    screen().tab();
    EXPECT_EQ(screen().view().activeFocusItem(), stop);
}

TEST_F(InsightsScreenTest, AFinishedSessionChangesTheFiguresWhileItIsShown) {
    view().appear();
    EXPECT_TRUE(screen().has(u"6 sessions in the last year"_s));
    start(u"a"_s, 600);
    pass(700);
    EXPECT_TRUE(screen().waitUntil([&] { return screen().has(u"7 sessions in the last year"_s); }));
}

TEST_F(InsightsScreenTest, WithOldSessionsOnlyThe30DayCardsStandAtZero) {
    controller().saveSessionHistory({{.sessionDate = time.now() - 40 * 86400.0,
                                      .goals = {{.text = u"a"_s, .status = GoalStatus::completed}},
                                      .duration = 0}});
    view().appear();
    EXPECT_EQ(screen().names().count(u"0%"_s), 7);
    EXPECT_THAT(screen().names().filter(QRegularExpression(u"^(Morn|After|Even|Night)"_s)),
                testing::ElementsAre(u"Morning"_s, u"Afternoon"_s, u"Evening"_s, u"Night"_s));
}

TEST_F(InsightsScreenTest, ADayAndAMonthStandWhereTheirCellsAre) {
    view().appear();
    const QRectF cells = test::placeOf(grid());
    EXPECT_NEAR(test::placeOf(*screen().find(u"Mon"_s)).center().y(), cells.top() + 17 + 7.5, 0.5);
    EXPECT_NEAR(test::placeOf(*screen().find(u"Fri"_s)).center().y(), cells.top() + 5 * 17 + 7.5,
                0.5);
    for (const auto &[month, column] : {std::pair(u"Mar"_s, 0), std::pair(u"Jun"_s, 13),
                                        std::pair(u"Sep"_s, 26), std::pair(u"Dec"_s, 39)}) {
        const QRectF label = test::placeOf(*screen().find(month));
        // 13 columns of 17 and the row's own gap of 2.
        EXPECT_EQ(label.left(), cells.left() + column / 13 * 223) << qPrintable(month);
        EXPECT_EQ(label.width(), 221);
        EXPECT_LE(label.bottom(), cells.top());
    }
}

TEST_F(InsightsScreenTest, InASmallWindowItScrollsAndTheGridKeepsItsSize) {
    view().appear();
    screen(QSize(700, 400));
    EXPECT_EQ(grid().size(), QSizeF(882, 117));
    const auto top = [&] { return test::placeOf(grid()).top(); };
    const double before = top();
    EXPECT_GT(before, 400);
    screen().tab();
    screen().key(Qt::Key_End);
    EXPECT_TRUE(screen().waitUntil([&] { return top() < before; }));
    EXPECT_LE(test::placeOf(*screen().find(u"6 sessions in the last year"_s)).bottom(), 400);
}
