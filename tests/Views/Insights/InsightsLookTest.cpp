#include "InsightsScreenFixture.h"
#include "ItemLook.h"
#include "TARNEStyle.h"
#include "TextLook.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tarne;
using namespace Qt::StringLiterals;
using test::expectLook;
using test::LooksLike;
using test::SymbolLook;

namespace {

/// The insights over their samples.
class InsightsLook : public test::InsightsScreenTest {
protected:
    const QQuickItem &text(const QString &name) {
        const QQuickItem *const found = screen().findText(name);
        EXPECT_TRUE(found) << qPrintable(name);
        return found ? *found : *screen().root();
    }
    QRectF placeOf(const QString &name) { return test::placeOf(text(name)); }
    /// The card that a text stands on.
    const QQuickItem &cardOf(const QString &name) {
        return *test::around(&text(name), "cornerRadius");
    }
    SymbolLook markBeside(const QString &name) { return test::markBeside(&text(name)); }
    QRectF placeOfMark(const QString &name) {
        return test::placeOf(*test::symbolBeside(&text(name)));
    }
    /// The legend's swatches, from less to more.
    QList<QQuickItem *> swatches() {
        for (const QQuickItem *item : text(u"Less"_s).parentItem()->childItems()) {
            if (!item->childItems().isEmpty())
                return item->childItems().mid(0, 5);
        }
        return {};
    }
};

const QStringList headings{u"Focus Streak"_s, u"Goal Completion Trends"_s,
                           u"Most Productive Times"_s, u"Your Focus Journey"_s};

} // namespace

TEST_F(InsightsLook, ItsTextsHaveTheirLook) {
    view().appear();
    using Type = TARNEStyle::Typography;
    const QColor primary = TARNEStyle::Colors::primaryText;
    const QColor secondary = TARNEStyle::Colors::secondaryText;
    expectLook(screen(), u"Insights"_s, Type::heading1(), primary);
    expectLook(screen(), u"Discover patterns and trends in your focus sessions"_s, Type::body(),
               secondary);
    for (const QString &heading : {u"Focus Streak"_s, u"Goal Completion Trends"_s,
                                   u"Most Productive Times"_s, u"Your Focus Journey"_s})
        expectLook(screen(), heading, Type::heading3(), primary);
    for (const QString &note : {u"Current Streak"_s, u"Longest Streak"_s, u"days"_s,
                                u"Last 30 days"_s, u"Past year of Stillhour sessions"_s})
        expectLook(screen(), note, Type::caption(), secondary);
    expectLook(screen(), u"1"_s, Type::system(32, QFont::Bold), primary);
    expectLook(screen(), u"67%"_s, Type::emphasis(), SystemColors::green);
    expectLook(screen(), u"33%"_s, Type::emphasis(), SystemColors::orange);
    expectLook(screen(), u"0%"_s, Type::emphasis(), SystemColors::red);
    expectLook(screen(), u"100%"_s, Type::emphasis(), TARNEStyle::Colors::accent);
    expectLook(screen(), u"Afternoon"_s, Type::body(), primary);
    for (const QString &small :
         {u"Mon"_s, u"Mar"_s, u"Less"_s, u"More"_s, u"6 sessions in the last year"_s})
        expectLook(screen(), small, Type::system(10), secondary);
}

TEST_F(InsightsLook, ThePaneHasTheNavigationTitle) {
    EXPECT_TRUE(screen().has(u"📊 Insights"_s, QAccessible::Pane));
}

TEST_F(InsightsLook, ThePageLiesOnTheBackgroundWithItsPaddings) {
    view().appear();
    EXPECT_EQ(screen().root()->property("color").value<QColor>(), TARNEStyle::Colors::background);
    const QRectF title = test::placeOf(*screen().find(u"Insights"_s, QAccessible::Heading));
    const QRectF subtitle = placeOf(u"Discover patterns and trends in your focus sessions"_s);
    EXPECT_EQ(title.top(), 16);
    EXPECT_EQ(subtitle.top(), title.bottom() + 8);
    EXPECT_NEAR(subtitle.center().x(), 500, 0.5);
    const QQuickItem &page = *test::around(&cardOf(u"Your Focus Journey"_s), "contentHeight");
    EXPECT_EQ(page.property("contentHeight").toDouble(),
              test::placeOf(cardOf(u"Your Focus Journey"_s)).bottom() + 16);
}

TEST_F(InsightsLook, EveryCardHasTheSameFrame) {
    view().appear();
    QColor shadow = SystemColors::black;
    shadow.setAlphaF(0.05F);
    for (const QString &heading : headings) {
        const QQuickItem &card = cardOf(heading);
        EXPECT_EQ(card.property("padding"), 16) << qPrintable(heading);
        EXPECT_EQ(card.property("spacing"), 16) << qPrintable(heading);
        EXPECT_EQ(card.property("cornerRadius"), 8) << qPrintable(heading);
        EXPECT_EQ(card.property("color").value<QColor>(), SystemColors::white);
        EXPECT_EQ(card.property("shadowColor").value<QColor>().name(QColor::HexArgb),
                  shadow.name(QColor::HexArgb));
        EXPECT_EQ(card.property("shadowRadius"), 8) << qPrintable(heading);
        EXPECT_EQ(card.property("shadowOffset"), 2) << qPrintable(heading);
        EXPECT_EQ(card.property("outlineWidth"), 0) << qPrintable(heading);
        EXPECT_GE(placeOf(heading).left(), test::placeOf(card).left() + 16);
    }
}

TEST_F(InsightsLook, TheCardsStandApartAndTwoShareARow) {
    view().appear();
    const auto place = [this](int index) { return test::placeOf(cardOf(headings[index])); };
    const QRectF streak = place(0);
    const QRectF trends = place(1);
    const QRectF times = place(2);
    const QRectF journey = place(3);
    EXPECT_EQ(streak.left(), 16);
    EXPECT_EQ(streak.right(), 984);
    EXPECT_EQ(streak.top(),
              placeOf(u"Discover patterns and trends in your focus sessions"_s).bottom() + 24);
    EXPECT_EQ(trends.top(), streak.bottom() + 24);
    EXPECT_EQ(trends.left(), 16);
    EXPECT_EQ(times.left(), trends.right() + 16);
    EXPECT_EQ(times.right(), 984);
    EXPECT_EQ(times.size(), trends.size());
    EXPECT_EQ(times.top(), trends.top());
    EXPECT_EQ(journey.top(), trends.bottom() + 24);
    EXPECT_EQ(journey.width(), streak.width());
    // The lower one of the two keeps its content at the top.
    EXPECT_EQ(placeOf(headings[1]).top(), placeOf(headings[2]).top());
    EXPECT_EQ(placeOf(headings[1]).top(), trends.top() + 16);
}

TEST_F(InsightsLook, TheStreaksHaveTheirSymbols) {
    view().appear();
    EXPECT_EQ(markBeside(u"Focus Streak"_s),
              (SymbolLook{u"flame.fill"_s, 16, SystemColors::orange}));
    EXPECT_EQ(markBeside(u"0"_s), (SymbolLook{u"flame.fill"_s, 20, SystemColors::orange}));
    EXPECT_EQ(markBeside(u"1"_s), (SymbolLook{u"trophy.fill"_s, 20, SystemColors::yellow}));
    EXPECT_EQ(placeOf(u"Focus Streak"_s).left(), placeOfMark(u"Focus Streak"_s).right() + 8);
}

TEST_F(InsightsLook, TheCurrentStreakStandsAtTheLeftAndTheLongestAtTheRight) {
    view().appear();
    const QRectF card = test::placeOf(cardOf(u"Focus Streak"_s)).adjusted(16, 16, -16, -16);
    const QRectF current = placeOf(u"0"_s);
    const QRectF longest = placeOf(u"1"_s);
    EXPECT_EQ(current.left(), card.left());
    EXPECT_EQ(placeOfMark(u"0"_s).bottomLeft(), current.bottomRight() + QPointF(4, 0));
    EXPECT_EQ(longest.right(), card.right());
    EXPECT_EQ(placeOfMark(u"1"_s).bottomRight(), longest.bottomLeft() - QPointF(4, 0));
    EXPECT_EQ(current.top(), placeOf(u"Focus Streak"_s).bottom() + 16);
    EXPECT_EQ(placeOf(u"Current Streak"_s).topLeft(), current.bottomLeft() + QPointF(0, 4));
    EXPECT_EQ(placeOf(u"Longest Streak"_s).topRight(), longest.bottomRight() + QPointF(0, 4));
    EXPECT_EQ(placeOf(u"days"_s).topLeft(),
              placeOf(u"Current Streak"_s).bottomLeft() + QPointF(0, 4));
    EXPECT_EQ(placeOf(u"days"_s).bottom(), card.bottom());
}

TEST_F(InsightsLook, TheOutcomesHaveTheirSymbolsAndColours) {
    view().appear();
    const auto expectRow = [this](const QString &label, const SymbolLook &mark,
                                  const QString &share) {
        EXPECT_EQ(markBeside(label), mark);
        EXPECT_EQ(placeOf(label).left(), placeOfMark(label).right() + 8) << qPrintable(label);
        const QQuickItem &value = *text(label).parentItem()->childItems().constLast();
        EXPECT_EQ(value.property("text"), share);
        EXPECT_EQ(value.property("color").value<QColor>(), mark.color);
        EXPECT_EQ(test::placeOf(value).right(), test::placeOf(cardOf(label)).right() - 16);
    };
    expectRow(u"Completed"_s, {u"checkmark.circle.fill"_s, 14, SystemColors::green}, u"67%"_s);
    expectRow(u"Partially Completed"_s, {u"minus.circle.fill"_s, 14, SystemColors::orange},
              u"33%"_s);
    expectRow(u"Not Completed"_s, {u"xmark.circle.fill"_s, 14, SystemColors::red}, u"0%"_s);
    EXPECT_EQ(placeOf(u"Partially Completed"_s).top(), placeOf(u"Completed"_s).bottom() + 8);
    EXPECT_EQ(placeOf(u"Completed"_s).top(), placeOf(u"Last 30 days"_s).bottom() + 16);
    EXPECT_EQ(placeOf(u"Last 30 days"_s).top(), placeOf(headings[1]).bottom() + 4);
}

TEST_F(InsightsLook, ThePeriodsHaveTheirEmoji) {
    view().appear();
    for (const auto &[period, emoji] :
         {std::pair(u"Morning"_s, u"🌅"_s), std::pair(u"Afternoon"_s, u"☀️"_s),
          std::pair(u"Evening"_s, u"🌙"_s), std::pair(u"Night"_s, u"🌃"_s)}) {
        const QQuickItem &icon = *text(period).parentItem()->childItems().constFirst();
        EXPECT_EQ(icon.property("text"), emoji);
        expectLook(screen(), emoji, TARNEStyle::Typography::emoji(14),
                   icon.property("color").value<QColor>());
        EXPECT_EQ(placeOf(period).left(), placeOf(emoji).right() + 8) << qPrintable(period);
    }
    EXPECT_EQ(placeOf(u"Morning"_s).top(), placeOf(u"Afternoon"_s).bottom() + 8);
}

TEST_F(InsightsLook, TheLegendHasASwatchOfEachLevel) {
    view().appear();
    const QList<QQuickItem *> shown = swatches();
    ASSERT_EQ(shown.size(), 5);
    const QImage picture = screen().picture();
    double left = placeOf(u"Less"_s).right() + 8;
    for (int level = 0; level < 5; ++level) {
        const QQuickItem &swatch = *shown[level];
        const QRectF place = test::placeOf(swatch);
        EXPECT_EQ(place.size(), QSizeF(10, 10));
        EXPECT_EQ(place.left(), left);
        EXPECT_EQ(test::groundOf(swatch), std::pair(InsightsView::legendColor(level), 2.0));
        const auto seen = LooksLike(onWhite(InsightsView::legendColor(level)));
        EXPECT_THAT(picture.pixelColor((place.topLeft() + QPointF(5, 5)).toPoint()), seen);
        // Not outlined.
        EXPECT_THAT(picture.pixelColor((place.topLeft() + QPointF(5, 0)).toPoint()), seen);
        left = place.right() + 2;
    }
    EXPECT_EQ(placeOf(u"More"_s).left(), left - 2 + 8);
    const QRectF card = test::placeOf(cardOf(u"More"_s)).adjusted(16, 16, -16, -16);
    EXPECT_EQ(placeOf(u"6 sessions in the last year"_s).bottomRight(), card.bottomRight());
}

TEST_F(InsightsLook, TheLegendStandsSixteenBelowTheGridAsTheGridDoesBelowTheHeading) {
    view().appear();
    const QRectF map = test::placeOf(grid());
    // The words of the months, and the space to the first row of cells, stand between.
    EXPECT_EQ(map.top() - 10 - 4, placeOf(u"Past year of Stillhour sessions"_s).bottom() + 16);
    EXPECT_EQ(placeOf(u"6 sessions in the last year"_s).top(), map.bottom() + 16);
}

TEST_F(InsightsLook, WhereTheCardIsNarrowerTheOldestWeeksAreCutOffAndTodayIsShown) {
    controller().saveSessionHistory(std::vector<SessionHistoryEntry>(
        4, {.sessionDate = time.now(), .goals = {}, .duration = 1500.0}));
    view().appear();
    screen(QSize(800, 900)).settle();
    const QRectF card = test::placeOf(cardOf(u"Your Focus Journey"_s)).adjusted(16, 16, -16, -16);
    EXPECT_EQ(card.width(), 800 - 4 * 16);
    EXPECT_EQ(test::placeOf(grid()).right(), card.right());
    EXPECT_THAT(cell(51, 1), LooksLike(SystemColors::green));
    // The names of the days keep their place, and no cell lies under them.
    const QRectF day = placeOf(u"Mon"_s);
    EXPECT_EQ(day.left(), card.left());
    const QImage picture = screen().picture();
    const int between = int(day.center().y()) + 9; // Below the word, across a row of cells.
    for (int x = int(day.left()); x < int(day.left()) + 30; ++x)
        EXPECT_EQ(picture.pixelColor(x, between), QColor(Qt::white)) << x;
    EXPECT_NE(picture.pixelColor(int(day.left()) + 40, int(day.center().y())), QColor(Qt::white));
}

TEST_F(InsightsLook, WhereThereIsRoomTheYearBeginsBesideTheNamesOfTheDays) {
    view().appear();
    EXPECT_EQ(test::placeOf(grid()).left(), placeOf(u"Mon"_s).left() + 30);
    EXPECT_EQ(test::placeOf(grid()).size(), QSizeF(882, 117));
}

TEST_F(InsightsLook, TheFirstSwatchMatchesAPastDayAndNoFutureOne) {
    view().appear();
    const QRectF first = test::placeOf(*swatches().constFirst());
    const QColor swatch = screen().picture().pixelColor(first.center().toPoint());
    EXPECT_THAT(cell(0, 0), LooksLike(swatch));
    EXPECT_GT(cell(51, 6).lightness(), swatch.lightness() + 5);
}

TEST_F(InsightsLook, ACellShowsItsDaysSessionsAndAFutureOneIsThePalest) {
    // It is a Monday: row 1 of the last column.
    std::vector<SessionHistoryEntry> entries(
        4, {.sessionDate = time.now(), .goals = {}, .duration = 0});
    entries.push_back({.sessionDate = time.now() - 86400.0, .goals = {}, .duration = 0});
    for (int i = 0; i < 2; ++i)
        entries.push_back({.sessionDate = time.now() - 2 * 86400.0, .goals = {}, .duration = 0});
    for (int i = 0; i < 3; ++i)
        entries.push_back(
            {.sessionDate = time.now() - 51 * 7 * 86400.0, .goals = {}, .duration = 0});
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

TEST_F(InsightsLook, ACellHasRoundedCornersAndAThinOutline) {
    controller().saveSessionHistory(std::vector<SessionHistoryEntry>(
        4, {.sessionDate = time.now(), .goals = {}, .duration = 0}));
    view().appear();
    const QImage picture = screen().picture();
    const QPoint corner = cornerOfCell(51, 1);
    EXPECT_THAT(picture.pixelColor(corner + QPoint(2, 2)), LooksLike(SystemColors::green));
    EXPECT_THAT(picture.pixelColor(corner + QPoint(14, 7)),
                testing::Not(LooksLike(SystemColors::green)));
    EXPECT_GT(picture.pixelColor(corner).red(), 150); // Hardly covered.
    // A quarter of a point beyond the edge, in gray at 0.2.
    QColor outline = SystemColors::gray;
    outline.setAlphaF(0.25F * 0.2F);
    EXPECT_THAT(picture.pixelColor(corner + QPoint(7, -1)), LooksLike(onWhite(outline)));
    EXPECT_NE(picture.pixelColor(corner + QPoint(7, -1)), QColor(Qt::white));
}
