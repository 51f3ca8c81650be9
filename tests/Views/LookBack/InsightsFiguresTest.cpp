#include "InsightsFigures.h"

#include "ToldHistory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using namespace tarne;
using namespace Qt::StringLiterals;
using test::intensityOfToday;
using test::Told;
using testing::ElementsAre;
using testing::SizeIs;

namespace {

std::vector<int> percentages(const Told &told) {
    const GoalCompletionPercentages p = told.figures().goalCompletionPercentages();
    return {p.completed, p.partiallyCompleted, p.notCompleted};
}

QString periodOfSessionAt(int hour, int minute) {
    Told told;
    told.session(told.at({2026, 3, 3, hour, minute, 59}));
    const ProductivityTimeData first = told.figures().calculateProductivityTimes().front();
    EXPECT_EQ(first.percentage, 100);
    return first.period;
}

} // namespace

TEST(InsightsFigures, SessionsTodayAndYesterdayAreAStreakOfTwo) {
    Told told;
    told.sessionsDaysAgo({0, 1});
    EXPECT_EQ(told.figures().calculateCurrentStreak(), 2);
    EXPECT_EQ(told.figures().calculateLongestStreak(), 2);
}

TEST(InsightsFigures, WithoutASessionTodayTheCurrentStreakIsZero) {
    Told told;
    told.sessionsDaysAgo({1, 2});
    EXPECT_EQ(told.figures().calculateCurrentStreak(), 0);
    EXPECT_EQ(told.figures().calculateLongestStreak(), 2);
    told.session(told.now);
    EXPECT_EQ(told.figures().calculateCurrentStreak(), 3);
}

TEST(InsightsFigures, AnEmptyHistoryHasNoStreaks) {
    EXPECT_EQ(Told().figures().calculateCurrentStreak(), 0);
    EXPECT_EQ(Told().figures().calculateLongestStreak(), 0);
}

TEST(InsightsFigures, SeveralSessionsOfADayCountAsOneDayOfAStreak) {
    Told told;
    told.sessionsDaysAgo({0, 0, 0});
    EXPECT_EQ(told.figures().calculateCurrentStreak(), 1);
    EXPECT_EQ(told.figures().calculateLongestStreak(), 1);
    EXPECT_EQ(intensityOfToday(told), 3);
}

TEST(InsightsFigures, TheLongestStreakMayLieInThePastAndInAnyOrder) {
    Told told;
    told.sessionsDaysAgo({500, 0, 502, 501, 504});
    EXPECT_EQ(told.figures().calculateLongestStreak(), 3);
    EXPECT_EQ(told.figures().calculateCurrentStreak(), 1);
}

TEST(InsightsFigures, AStreakRunsAcrossDaysOf23And25HoursAndASkippedMidnight) {
    for (const char *zone :
         {"Europe/Berlin", "America/Santiago", "Africa/Cairo", "America/Havana"}) {
        Told told(zone);
        for (int day = 0; day < 800; ++day)
            told.session(told.daysAgo(day));
        EXPECT_EQ(told.figures().calculateCurrentStreak(), 800) << zone;
        EXPECT_EQ(told.figures().calculateLongestStreak(), 800) << zone;
    }
}

TEST(InsightsFigures, AStreakRunsAcrossThe29thOfFebruaryAndTheTurnOfTheYear) {
    Told told;
    for (const DateComponents &day :
         {DateComponents{2024, 2, 28}, DateComponents{2024, 2, 29}, DateComponents{2024, 3, 1}})
        told.session(told.at(day));
    EXPECT_EQ(told.figures().calculateLongestStreak(), 3);
    Told turn;
    turn.session(turn.at({2025, 12, 31, 23, 59, 59})).session(turn.at({2026, 1, 1}));
    EXPECT_EQ(turn.figures().calculateLongestStreak(), 2);
}

TEST(InsightsFigures, ADayThatTheZoneLeavesOutBreaksNoStreak) {
    Told told("Pacific/Apia");
    told.now = told.at({2011, 12, 31, 15});
    told.session(told.at({2011, 12, 31, 9}))
        .session(told.at({2011, 12, 29, 9}))
        .session(told.at({2011, 12, 28, 9}));
    EXPECT_EQ(told.figures().calculateCurrentStreak(), 3);
    EXPECT_EQ(told.figures().calculateLongestStreak(), 3);
}

TEST(InsightsFigures, OneGoalOfEachClassIs33Percent33And33) {
    Told told;
    told.session(told.now, {GoalStatus::completed, GoalStatus::partiallyCompleted})
        .session(told.now, {GoalStatus::notCompleted});
    EXPECT_THAT(percentages(told), ElementsAre(33, 33, 33));
}

TEST(InsightsFigures, TwoGoalsCompletedAndOnePartialAre67Percent33And0) {
    Told told;
    told.session(told.now,
                 {GoalStatus::completed, GoalStatus::partiallyCompleted, GoalStatus::completed});
    EXPECT_THAT(percentages(told), ElementsAre(67, 33, 0));
}

TEST(InsightsFigures, HalvesOfAPercentAreRoundedAwayFromZero) {
    Told told;
    told.session(told.now, std::vector<std::optional<GoalStatus>>(7, GoalStatus::completed));
    told.session(told.now, {GoalStatus::partiallyCompleted});
    EXPECT_THAT(percentages(told), ElementsAre(88, 13, 0)); // 87.5 and 12.5
}

TEST(InsightsFigures, AGoalWithoutStatusCountsAsNotCompleted) {
    Told told;
    told.session(told.now, {std::nullopt, GoalStatus::completed});
    EXPECT_THAT(percentages(told), ElementsAre(50, 0, 50));
}

TEST(InsightsFigures, WithoutGoalsThePercentagesAreZero) {
    Told told;
    EXPECT_THAT(percentages(told), ElementsAre(0, 0, 0));
    told.session(told.now);
    EXPECT_THAT(percentages(told), ElementsAre(0, 0, 0));
}

TEST(InsightsFigures, ASessionOfExactly30DaysAgoStillCounts) {
    Told told;
    told.session(told.daysAgo(30), {GoalStatus::completed});
    EXPECT_THAT(told.figures().last30DaysHistory(), SizeIs(1));
    EXPECT_THAT(percentages(told), ElementsAre(100, 0, 0));
    Told older;
    older.session(older.daysAgo(30) - 0.001, {GoalStatus::completed});
    EXPECT_THAT(older.figures().last30DaysHistory(), SizeIs(0));
}

TEST(InsightsFigures, ASessionInTheFutureIsAmongTheLast30Days) {
    Told told;
    told.session(told.daysAgo(-400), {GoalStatus::completed});
    EXPECT_THAT(told.figures().last30DaysHistory(), SizeIs(1));
    EXPECT_EQ(told.figures().totalSessionsThisYear(), 1);
    EXPECT_EQ(told.figures().calculateCurrentStreak(), 0);
}

TEST(InsightsFigures, PeriodsTurnAtTheirHours) {
    EXPECT_EQ(periodOfSessionAt(4, 59), u"Night"_s);
    EXPECT_EQ(periodOfSessionAt(5, 0), u"Morning"_s);
    EXPECT_EQ(periodOfSessionAt(11, 59), u"Morning"_s);
    EXPECT_EQ(periodOfSessionAt(12, 0), u"Afternoon"_s);
    EXPECT_EQ(periodOfSessionAt(16, 59), u"Afternoon"_s);
    EXPECT_EQ(periodOfSessionAt(17, 0), u"Evening"_s);
    EXPECT_EQ(periodOfSessionAt(20, 59), u"Evening"_s);
    EXPECT_EQ(periodOfSessionAt(21, 0), u"Night"_s);
    EXPECT_EQ(periodOfSessionAt(23, 59), u"Night"_s);
    EXPECT_EQ(periodOfSessionAt(0, 0), u"Night"_s);
}

TEST(InsightsFigures, WithoutRecentSessionsThePeriodsStandInTheirOrderAtZero) {
    Told told;
    told.sessionsDaysAgo({31, 200});
    EXPECT_THAT(told.figures().calculateProductivityTimes(),
                ElementsAre(ProductivityTimeData{u"Morning"_s, u"🌅"_s, 0},
                            ProductivityTimeData{u"Afternoon"_s, u"☀️"_s, 0},
                            ProductivityTimeData{u"Evening"_s, u"🌙"_s, 0},
                            ProductivityTimeData{u"Night"_s, u"🌃"_s, 0}));
}

TEST(InsightsFigures, PeriodsAreTruncatedAndTheHighestComesFirst) {
    Told told;
    told.session(told.at({2026, 3, 3, 22}))
        .session(told.at({2026, 3, 3, 18}))
        .session(told.at({2026, 3, 3, 13}));
    EXPECT_THAT(told.figures().calculateProductivityTimes(),
                ElementsAre(ProductivityTimeData{u"Afternoon"_s, u"☀️"_s, 33},
                            ProductivityTimeData{u"Evening"_s, u"🌙"_s, 33},
                            ProductivityTimeData{u"Night"_s, u"🌃"_s, 33},
                            ProductivityTimeData{u"Morning"_s, u"🌅"_s, 0}));
    told.session(told.at({2026, 3, 3, 23}));
    EXPECT_EQ(told.figures().calculateProductivityTimes().front(),
              (ProductivityTimeData{u"Night"_s, u"🌃"_s, 50}));
}

TEST(InsightsFigures, DatesFarFromEveryCalendarDoNoHarm) {
    Told told;
    told.session(told.at({1, 1, 1})).session(told.at({9999, 12, 31}));
    told.session(Date::fromReferenceSeconds(1e300)).session(Date::fromReferenceSeconds(-1e300));
    EXPECT_EQ(told.figures().calculateCurrentStreak(), 0);
    EXPECT_EQ(told.figures().calculateLongestStreak(), 1);
    EXPECT_EQ(told.figures().totalSessionsThisYear(), 2);
}

TEST(InsightsFigures, WhereTheCalendarBeginsCutOffsAreNowAndThereIsNoGrid) {
    Told told;
    told.now = test::calendarBegins;
    told.session(told.now - 1.0, {GoalStatus::notCompleted})
        .session(told.now, {GoalStatus::completed});
    const std::vector<const SessionOutcome *> recent = told.figures().last30DaysHistory();
    EXPECT_THAT(recent, ElementsAre(&told.outcomes[1]));
    EXPECT_THAT(percentages(told), ElementsAre(100, 0, 0));
    EXPECT_EQ(told.figures().totalSessionsThisYear(), 1);
    EXPECT_EQ(told.figures().calculateCurrentStreak(), 1);
    EXPECT_THAT(told.figures().weeklyData(), SizeIs(0));
    EXPECT_THAT(InsightsFigures::monthLabels({}, told.calendar), SizeIs(0));
    // The days of a year before are left out, and today began before the cut-off.
    const std::vector<HeatmapDayData> days = told.figures().generateHeatmapData();
    ASSERT_THAT(days, SizeIs(1));
    EXPECT_EQ(days[0].intensity, 0);
}

TEST(InsightsFigures, BothPassesOfTheHourThatOccursTwiceLieInTheirDayAndPeriod) {
    Told told;
    // Berlin's clocks went back from 3:00 to 2:00 on 2025-10-26.
    const Date first = told.at({2025, 10, 26, 2, 30});
    told.now = told.at({2025, 10, 26, 12});
    told.session(first).session(first + 3600.0);
    EXPECT_EQ(told.figures().calculateCurrentStreak(), 1);
    EXPECT_EQ(intensityOfToday(told), 2);
    EXPECT_EQ(told.figures().calculateProductivityTimes().front(),
              (ProductivityTimeData{u"Night"_s, u"🌃"_s, 100}));
}

TEST(InsightsFigures, WithTheClockSetBackTheNewestSessionsLieInTheFuture) {
    Told told;
    told.sessionsDaysAgo({0, 1, 2});
    told.now = told.daysAgo(5);
    EXPECT_EQ(told.figures().calculateCurrentStreak(), 0);
    EXPECT_EQ(told.figures().calculateLongestStreak(), 3);
    EXPECT_EQ(told.figures().totalSessionsThisYear(), 3);
    EXPECT_EQ(intensityOfToday(told), 0);
}

TEST(InsightsFigures, AnotherTimeZoneRegroupsOldSessions) {
    Told told;
    told.session(told.at({2026, 3, 3, 23, 30})).session(told.at({2026, 3, 4, 0, 30}));
    EXPECT_EQ(told.figures().calculateCurrentStreak(), 2);
    told.calendar = Calendar(QTimeZone("America/New_York"), QLocale(u"en_US"_s));
    EXPECT_EQ(told.figures().calculateLongestStreak(), 1);
    EXPECT_EQ(told.figures().calculateProductivityTimes().front().period, u"Evening"_s);
}

TEST(InsightsFigures, LengthsOfSessionsPlayNoPart) {
    Told told;
    told.sessionsDaysAgo({0, 1});
    told.history[0].duration = -1.0;
    told.history[1].duration = std::numeric_limits<double>::infinity();
    EXPECT_EQ(told.figures().calculateCurrentStreak(), 2);
    EXPECT_EQ(told.figures().totalSessionsThisYear(), 2);
}
