#include "HeatmapGrid.h"
#include "InsightsView.h"
#include "SessionFixture.h"
#include "TARNEStyle.h"
#include "TextLook.h"
#include "UiDriver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tarne;
using namespace Qt::StringLiterals;

namespace {

class InsightsScreenTest : public test::SessionTest {
protected:
    static CurrentCalendar calendar() {
        return [] { return Calendar(QTimeZone::utc(), QLocale(u"en_US"_s)); };
    }
    InsightsView &view() {
        if (!m_view)
            m_view = std::make_unique<InsightsView>(controller(), time, calendar());
        return *m_view;
    }
    test::UiDriver &screen(const QSize &size = QSize(1000, 800)) {
        if (!m_screen) {
            m_screen = std::make_unique<test::UiDriver>(
                QUrl(u"qrc:/qt/qml/TARNE/Views/InsightsScreen.qml"_s),
                QVariantMap{{u"view"_s, QVariant::fromValue(&view())}}, size);
        }
        return *m_screen;
    }
    const HeatmapGrid &grid() { return *screen().root()->findChild<HeatmapGrid *>(); }
    /// What the middle of a cell looks like in the window, column 0 and row 0 being the oldest
    /// Sunday.
    QColor cell(int column, int row) {
        constexpr double step = HeatmapGrid::cellSize + HeatmapGrid::gap;
        const QPointF middle(column * step + 7.5, row * step + 7.5);
        return screen().picture().pixelColor(grid().mapToScene(middle).toPoint());
    }
    static QColor onWhite(const QColor &color) {
        const auto blend = [&](float channel) { return 1 + (channel - 1) * color.alphaF(); };
        return QColor::fromRgbF(blend(color.redF()), blend(color.greenF()), blend(color.blueF()));
    }

private:
    std::unique_ptr<InsightsView> m_view;
    std::unique_ptr<test::UiDriver> m_screen;
};

MATCHER_P(LooksLike, color, "") {
    return std::abs(arg.red() - color.red()) <= 2 && std::abs(arg.green() - color.green()) <= 2 &&
           std::abs(arg.blue() - color.blue()) <= 2;
}

} // namespace

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

TEST_F(InsightsScreenTest, LabelsStayPluralAtOne) {
    controller().saveSessionHistory({{.sessionDate = time.now()}});
    view().appear();
    EXPECT_TRUE(screen().has(u"1 sessions in the last year"_s));
    EXPECT_TRUE(screen().has(u"days"_s));
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

TEST_F(InsightsScreenTest, AFinishedSessionChangesTheFiguresWhileItIsShown) {
    view().appear();
    EXPECT_TRUE(screen().has(u"6 sessions in the last year"_s));
    start(u"a"_s, 600);
    pass(700);
    EXPECT_TRUE(screen().waitUntil([&] { return screen().has(u"7 sessions in the last year"_s); }));
}

TEST_F(InsightsScreenTest, ItsTextsHaveTheirLook) {
    view().appear();
    using Type = TARNEStyle::Typography;
    const QColor primary = TARNEStyle::Colors::primaryText;
    const QColor secondary = TARNEStyle::Colors::secondaryText;
    test::expectLook(screen(), u"Insights"_s, Type::heading1(), primary);
    test::expectLook(screen(), u"Discover patterns and trends in your focus sessions"_s,
                     Type::body(), secondary);
    for (const QString &heading : {u"Focus Streak"_s, u"Goal Completion Trends"_s,
                                   u"Most Productive Times"_s, u"Your Focus Journey"_s})
        test::expectLook(screen(), heading, Type::heading3(), primary);
    for (const QString &note : {u"Current Streak"_s, u"Longest Streak"_s, u"days"_s,
                                u"Last 30 days"_s, u"Past year of Stillhour sessions"_s})
        test::expectLook(screen(), note, Type::caption(), secondary);
    test::expectLook(screen(), u"1"_s, Type::system(32, QFont::Bold), primary);
    test::expectLook(screen(), u"67%"_s, Type::emphasis(), SystemColors::green);
    test::expectLook(screen(), u"33%"_s, Type::emphasis(), SystemColors::orange);
    test::expectLook(screen(), u"0%"_s, Type::emphasis(), SystemColors::red);
    test::expectLook(screen(), u"100%"_s, Type::emphasis(), TARNEStyle::Colors::accent);
    test::expectLook(screen(), u"Afternoon"_s, Type::body(), primary);
    for (const QString &small :
         {u"Mon"_s, u"Mar"_s, u"Less"_s, u"More"_s, u"6 sessions in the last year"_s})
        test::expectLook(screen(), small, Type::system(10), secondary);
}

TEST_F(InsightsScreenTest, WithOldSessionsOnlyThe30DayCardsStandAtZero) {
    controller().saveSessionHistory(
        {{.sessionDate = time.now() - 40 * 86400.0,
          .goals = {{.text = u"a"_s, .status = GoalStatus::completed}}}});
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

TEST_F(InsightsScreenTest, ACellShowsItsDaysSessionsAndAFutureOneIsThePalest) {
    // It is a Monday: row 1 of the last column.
    std::vector<SessionHistoryEntry> entries(4, {.sessionDate = time.now()});
    entries.push_back({.sessionDate = time.now() - 86400.0});
    for (int i = 0; i < 2; ++i)
        entries.push_back({.sessionDate = time.now() - 2 * 86400.0});
    for (int i = 0; i < 3; ++i)
        entries.push_back({.sessionDate = time.now() - 51 * 7 * 86400.0});
    controller().saveSessionHistory(entries);
    view().appear();
    EXPECT_THAT(cell(51, 1), LooksLike(SystemColors::green));
    EXPECT_THAT(cell(51, 0), LooksLike(onWhite(InsightsView::legendColor(1))));
    EXPECT_THAT(cell(50, 6), LooksLike(onWhite(InsightsView::legendColor(2))));
    EXPECT_THAT(cell(0, 1), LooksLike(onWhite(InsightsView::legendColor(3))));
    EXPECT_THAT(cell(0, 0), LooksLike(onWhite(InsightsView::legendColor(0))));
    EXPECT_THAT(cell(51, 2), LooksLike(onWhite(InsightsView::heatmapColor({.isFuture = true}))));
    EXPECT_GT(cell(51, 2).lightness(), cell(0, 0).lightness());
}

TEST_F(InsightsScreenTest, TheHalvesAreEquallyWideAndHigh) {
    view().appear();
    const QRectF trends =
        test::placeOf(*screen().find(u"Goal Completion Trends"_s)->parentItem()->parentItem());
    const QRectF times =
        test::placeOf(*screen().find(u"Most Productive Times"_s)->parentItem()->parentItem());
    EXPECT_EQ(trends.width(), times.width());
    EXPECT_EQ(trends.top(), times.top());
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
