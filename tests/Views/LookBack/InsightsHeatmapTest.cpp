#include "InsightsFigures.h"

#include "ToldHistory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tarne;
using namespace Qt::StringLiterals;
using test::cells;
using test::intensityOfToday;
using test::Told;
using testing::SizeIs;

TEST(InsightsHeatmap, TheGridHas52WeeksOfSevenDaysFromSundayOn) {
    for (const char *zone : {"UTC", "Europe/Berlin", "America/Santiago", "Africa/Cairo"}) {
        Told told(zone);
        const std::vector<WeekData> weeks = told.figures().weeklyData();
        ASSERT_THAT(weeks, SizeIs(52));
        for (int index = 0; index < 52; ++index) {
            const WeekData &week = weeks[static_cast<std::size_t>(index)];
            EXPECT_EQ(week.weekIndex, index);
            ASSERT_THAT(week.days, SizeIs(7));
            for (int day = 0; day < 7; ++day) {
                const Date date = week.days[static_cast<std::size_t>(day)].date;
                EXPECT_EQ(told.calendar.weekday(date), day + 1) << zone;
                EXPECT_EQ(told.calendar.startOfDay(date), date) << zone;
            }
        }
    }
}

TEST(InsightsHeatmap, WhateverTheLocaleTheGridBeginsOnASunday) {
    Told told;
    told.calendar = Calendar(told.calendar.timeZone(), QLocale(u"de_DE"_s));
    EXPECT_EQ(told.calendar.weekday(told.figures().weeklyData().front().days.front().date), 1);
}

TEST(InsightsHeatmap, OnASundayTheLastColumnHoldsTodayAndSixFutureCells) {
    Told told;
    told.now = told.at({2026, 3, 8, 0, 0, 0});
    const std::vector<HeatmapDayData> days = told.figures().weeklyData().back().days;
    EXPECT_EQ(days[0].date, told.now);
    EXPECT_FALSE(days[0].isFuture);
    for (std::size_t day = 1; day < 7; ++day)
        EXPECT_TRUE(days[day].isFuture) << day;
}

TEST(InsightsHeatmap, OnASaturdayThereIsNoFutureCell) {
    Told told;
    told.now = told.at({2026, 3, 7, 23, 59, 59});
    for (const HeatmapDayData &cell : cells(told.figures().weeklyData()))
        EXPECT_FALSE(cell.isFuture);
    EXPECT_EQ(told.figures().weeklyData().back().days.back().date,
              told.calendar.startOfDay(told.now));
}

TEST(InsightsHeatmap, WhereTheCalendarEndsTheCellsBeyondAreLeftOut) {
    Told told;
    told.now = told.at({100'000, 12, 31, 12}); // A Sunday.
    const std::vector<WeekData> weeks = told.figures().weeklyData();
    ASSERT_THAT(weeks, SizeIs(52));
    EXPECT_THAT(weeks[50].days, SizeIs(7));
    ASSERT_THAT(weeks[51].days, SizeIs(1));
    EXPECT_EQ(weeks[51].days[0].date, told.calendar.startOfDay(told.now));
}

TEST(InsightsHeatmap, AFutureCellHasNoIntensityWhateverHappenedThere) {
    Told told;
    told.session(told.daysAgo(-1));
    const auto days = told.figures().weeklyData().back().days;
    EXPECT_TRUE(days[4].isFuture);
    EXPECT_EQ(days[4].intensity, 0);
}

TEST(InsightsHeatmap, SixSessionsOfADayAreAsIntenseAsFour) {
    Told told;
    told.sessionsDaysAgo({0, 0, 0, 0});
    EXPECT_EQ(intensityOfToday(told), 4);
    told.sessionsDaysAgo({0, 0});
    EXPECT_EQ(intensityOfToday(told), 4);
}

TEST(InsightsHeatmap, CellsAndColumnsHaveIdsOfTheirOwnInEachCalculation) {
    const Told told;
    const auto first = told.figures().weeklyData();
    const auto second = told.figures().weeklyData();
    EXPECT_NE(first[0].id, second[0].id);
    EXPECT_NE(first[0].days[0].id, second[0].days[0].id);
    EXPECT_NE(first[0].days[0].id, first[0].days[1].id);
}

TEST(InsightsHeatmap, ASessionOlderThanTheGridCountsForTheLongestStreakOnly) {
    Told told;
    told.sessionsDaysAgo({400});
    EXPECT_EQ(told.figures().calculateLongestStreak(), 1);
    EXPECT_EQ(told.figures().totalSessionsThisYear(), 0);
    for (const HeatmapDayData &cell : cells(told.figures().weeklyData()))
        EXPECT_EQ(cell.intensity, 0);
}

TEST(InsightsHeatmap, TheTotalCountsFromTheExactMoment51WeeksAgo) {
    Told told;
    told.session(told.daysAgo(51 * 7));
    EXPECT_EQ(told.figures().totalSessionsThisYear(), 1);
    told.session(told.daysAgo(51 * 7) - 1.0);
    EXPECT_EQ(told.figures().totalSessionsThisYear(), 1);
    // The grid begins earlier and counts whole days: it shows both.
    int shown = 0;
    for (const HeatmapDayData &cell : cells(told.figures().weeklyData()))
        shown += cell.intensity;
    EXPECT_EQ(shown, 2);
}

TEST(InsightsHeatmap, RowLabelsNameEveryOtherDayFromMondayOn) {
    EXPECT_EQ(InsightsFigures::dayLabels(),
              (QStringList{u""_s, u"Mon"_s, u""_s, u"Wed"_s, u""_s, u"Fri"_s, u""_s}));
}

TEST(InsightsHeatmap, MonthLabelsStandAQuarterOfAYearApart) {
    const Told told;
    EXPECT_EQ(InsightsFigures::monthLabels(told.figures().weeklyData(), told.calendar),
              (QStringList{u"Mar"_s, u"Jun"_s, u"Sep"_s, u"Dec"_s}));
}

TEST(InsightsHeatmap, AWeekThatIsNotThereHasNoMonthLabel) {
    const Told told;
    std::vector<WeekData> weeks = told.figures().weeklyData();
    weeks[13].days.clear();
    weeks.resize(30);
    EXPECT_EQ(InsightsFigures::monthLabels(weeks, told.calendar),
              (QStringList{u"Mar"_s, u"Sep"_s}));
}

TEST(InsightsHeatmap, TheFlatFormHas365DaysUpToToday) {
    Told told;
    told.sessionsDaysAgo({0, 0, 364, 364, 364, 364, 364, 365, 366});
    const std::vector<HeatmapDayData> days = told.figures().generateHeatmapData();
    ASSERT_THAT(days, SizeIs(365));
    EXPECT_EQ(days.back().date, told.calendar.startOfDay(told.now));
    EXPECT_EQ(days.back().intensity, 2);
    EXPECT_EQ(days.front().intensity, 4);
    for (const HeatmapDayData &day : days)
        EXPECT_FALSE(day.isFuture);
}
