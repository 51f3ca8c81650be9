#include "HeatmapGrid.h"
#include "InsightsView.h"
#include "SessionFixture.h"
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
    test::UiDriver &screen() {
        if (!m_screen) {
            m_screen = std::make_unique<test::UiDriver>(
                QUrl(u"qrc:/qt/qml/TARNE/Views/InsightsScreen.qml"_s),
                QVariantMap{{u"view"_s, QVariant::fromValue(&view())}}, QSize(1000, 800));
        }
        return *m_screen;
    }

private:
    std::unique_ptr<InsightsView> m_view;
    std::unique_ptr<test::UiDriver> m_screen;
};

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
