#include "InsightsFigures.h"

#include "RandomHistory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDateTime>

#include <cmath>
#include <set>

using namespace tarne;
using namespace Qt::StringLiterals;
using test::RandomHistory;
using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

namespace {

constexpr quint64 randomCases = 10000;

/// A history told in clock times of one zone, looked at on 2026-03-04, a Wednesday, at 15:00.
class Told {
public:
    explicit Told(const char *zone = "Europe/Berlin")
        : calendar(QTimeZone(QByteArray(zone)), QLocale(u"en_US"_s)), now(at({2026, 3, 4, 15})) {}

    Date at(const DateComponents &components) const { return *calendar.date(components); }
    Date daysAgo(int days) const { return *calendar.dateByAdding(Calendar::Unit::day, -days, now); }

    Told &session(Date date, std::vector<std::optional<GoalStatus>> statuses = {}) {
        SessionHistoryEntry entry{.sessionDate = date, .duration = 1500};
        for (const auto &status : statuses)
            entry.goals.push_back({.text = u"goal"_s, .status = status});
        history.push_back(entry);
        return *this;
    }
    Told &sessionsDaysAgo(std::initializer_list<int> days) {
        for (const int day : days)
            session(daysAgo(day));
        return *this;
    }
    InsightsFigures figures() const { return InsightsFigures(history, calendar, now); }

    Calendar calendar;
    Date now;
    std::vector<SessionHistoryEntry> history;
};

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

std::vector<HeatmapDayData> cells(const std::vector<WeekData> &weeks) {
    std::vector<HeatmapDayData> all;
    for (const WeekData &week : weeks)
        all.insert(all.end(), week.days.begin(), week.days.end());
    return all;
}

int intensityOfToday(const Told &told) {
    const std::vector<WeekData> weeks = told.figures().weeklyData();
    for (const HeatmapDayData &cell : cells(weeks)) {
        if (cell.date == told.calendar.startOfDay(told.now))
            return cell.intensity;
    }
    ADD_FAILURE() << "no cell of today";
    return -1;
}

// The slow references work on dates as Qt's own calendar and zone have them.

QDate localDay(const RandomHistory &random, Date date) {
    const auto seconds = static_cast<qint64>(std::floor(date.secondsSince1970()));
    return QDateTime::fromSecsSinceEpoch(seconds, random.zone).date();
}

std::multiset<QDate> localDays(const RandomHistory &random) {
    std::multiset<QDate> days;
    for (const SessionHistoryEntry &entry : random.history)
        days.insert(localDay(random, entry.sessionDate));
    return days;
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

TEST(InsightsFigures, TheGridHas52WeeksOfSevenDaysFromSundayOn) {
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

TEST(InsightsFigures, WhateverTheLocaleTheGridBeginsOnASunday) {
    Told told;
    told.calendar = Calendar(told.calendar.timeZone(), QLocale(u"de_DE"_s));
    EXPECT_EQ(told.calendar.weekday(told.figures().weeklyData().front().days.front().date), 1);
}

TEST(InsightsFigures, OnASundayTheLastColumnHoldsTodayAndSixFutureCells) {
    Told told;
    told.now = told.at({2026, 3, 8, 0, 0, 0});
    const std::vector<HeatmapDayData> days = told.figures().weeklyData().back().days;
    EXPECT_EQ(days[0].date, told.now);
    EXPECT_FALSE(days[0].isFuture);
    for (std::size_t day = 1; day < 7; ++day)
        EXPECT_TRUE(days[day].isFuture) << day;
}

TEST(InsightsFigures, OnASaturdayThereIsNoFutureCell) {
    Told told;
    told.now = told.at({2026, 3, 7, 23, 59, 59});
    for (const HeatmapDayData &cell : cells(told.figures().weeklyData()))
        EXPECT_FALSE(cell.isFuture);
    EXPECT_EQ(told.figures().weeklyData().back().days.back().date,
              told.calendar.startOfDay(told.now));
}

TEST(InsightsFigures, AFutureCellHasNoIntensityWhateverHappenedThere) {
    Told told;
    told.session(told.daysAgo(-1));
    const auto days = told.figures().weeklyData().back().days;
    EXPECT_TRUE(days[4].isFuture);
    EXPECT_EQ(days[4].intensity, 0);
}

TEST(InsightsFigures, SixSessionsOfADayAreAsIntenseAsFour) {
    Told told;
    told.sessionsDaysAgo({0, 0, 0, 0});
    EXPECT_EQ(intensityOfToday(told), 4);
    told.sessionsDaysAgo({0, 0});
    EXPECT_EQ(intensityOfToday(told), 4);
}

TEST(InsightsFigures, CellsAndColumnsHaveIdsOfTheirOwnInEachCalculation) {
    const Told told;
    const auto first = told.figures().weeklyData();
    const auto second = told.figures().weeklyData();
    EXPECT_NE(first[0].id, second[0].id);
    EXPECT_NE(first[0].days[0].id, second[0].days[0].id);
    EXPECT_NE(first[0].days[0].id, first[0].days[1].id);
}

TEST(InsightsFigures, ASessionOlderThanTheGridCountsForTheLongestStreakOnly) {
    Told told;
    told.sessionsDaysAgo({400});
    EXPECT_EQ(told.figures().calculateLongestStreak(), 1);
    EXPECT_EQ(told.figures().totalSessionsThisYear(), 0);
    for (const HeatmapDayData &cell : cells(told.figures().weeklyData()))
        EXPECT_EQ(cell.intensity, 0);
}

TEST(InsightsFigures, TheTotalCountsFromTheExactMoment51WeeksAgo) {
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

TEST(InsightsFigures, RowLabelsNameEveryOtherDayFromMondayOn) {
    EXPECT_EQ(InsightsFigures::dayLabels(),
              (QStringList{u""_s, u"Mon"_s, u""_s, u"Wed"_s, u""_s, u"Fri"_s, u""_s}));
}

TEST(InsightsFigures, MonthLabelsStandAQuarterOfAYearApart) {
    const Told told;
    EXPECT_EQ(InsightsFigures::monthLabels(told.figures().weeklyData(), told.calendar),
              (QStringList{u"Mar"_s, u"Jun"_s, u"Sep"_s, u"Dec"_s}));
}

TEST(InsightsFigures, AWeekThatIsNotThereHasNoMonthLabel) {
    const Told told;
    std::vector<WeekData> weeks = told.figures().weeklyData();
    weeks[13].days.clear();
    weeks.resize(30);
    EXPECT_EQ(InsightsFigures::monthLabels(weeks, told.calendar),
              (QStringList{u"Mar"_s, u"Sep"_s}));
}

TEST(InsightsFigures, TheFlatFormHas365DaysUpToToday) {
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

TEST(InsightsFigures, DatesFarFromEveryCalendarDoNoHarm) {
    Told told;
    told.session(told.at({1, 1, 1})).session(told.at({9999, 12, 31}));
    told.session(Date::fromReferenceSeconds(1e300)).session(Date::fromReferenceSeconds(-1e300));
    EXPECT_EQ(told.figures().calculateCurrentStreak(), 0);
    EXPECT_EQ(told.figures().calculateLongestStreak(), 1);
    EXPECT_EQ(told.figures().totalSessionsThisYear(), 2);
}

TEST(InsightsFiguresProperty, StreaksAreThoseOfTheSlowReference) {
    for (quint64 seed = 0; seed < randomCases; ++seed) {
        const RandomHistory random(seed);
        const std::multiset<QDate> days = localDays(random);
        int current = 0;
        for (QDate day = localDay(random, random.now); days.contains(day); day = day.addDays(-1))
            ++current;
        int longest = 0;
        for (const QDate &first : days) {
            int run = 0;
            while (days.contains(first.addDays(run)))
                ++run;
            longest = std::max(longest, run);
        }
        const InsightsFigures figures(random.history, random.calendar, random.now);
        ASSERT_EQ(figures.calculateCurrentStreak(), current) << seed;
        ASSERT_EQ(figures.calculateLongestStreak(), longest) << seed;
    }
}

TEST(InsightsFiguresProperty, PercentagesAndPeriodsAreThoseOfTheSlowReference) {
    for (quint64 seed = 0; seed < randomCases; ++seed) {
        const RandomHistory random(seed);
        const Date cutoff = *random.calendar.dateByAdding(Calendar::Unit::day, -30, random.now);
        int goals[3] = {};
        int sessions = 0;
        QMap<QString, int> ends;
        for (const SessionHistoryEntry &entry : random.history) {
            if (entry.sessionDate < cutoff)
                continue;
            ++sessions;
            for (const SessionGoal &goal : entry.goals)
                ++goals[static_cast<int>(goal.status.value_or(GoalStatus::notCompleted))];
            const auto second =
                static_cast<qint64>(std::floor(entry.sessionDate.secondsSince1970()));
            const int hour = QDateTime::fromSecsSinceEpoch(second, random.zone).time().hour();
            ++ends[hour < 5    ? u"Night"_s
                   : hour < 12 ? u"Morning"_s
                   : hour < 17 ? u"Afternoon"_s
                   : hour < 21 ? u"Evening"_s
                               : u"Night"_s];
        }
        const int total = goals[0] + goals[1] + goals[2];
        const auto rounded = [total](int count) {
            return total == 0 ? 0 : (count * 200 + total) / (total * 2);
        };
        const InsightsFigures figures(random.history, random.calendar, random.now);
        ASSERT_EQ(
            figures.goalCompletionPercentages(),
            (GoalCompletionPercentages{rounded(goals[0]), rounded(goals[1]), rounded(goals[2])}))
            << seed;
        int previous = 100;
        for (const ProductivityTimeData &time : figures.calculateProductivityTimes()) {
            ASSERT_LE(time.percentage, previous) << seed;
            previous = time.percentage;
            // Cut off the nearest double, which may lie just below a whole percentage.
            const int exact = sessions == 0 ? 0 : ends[time.period] * 100 / sessions;
            ASSERT_TRUE(time.percentage == exact ||
                        (time.percentage == exact - 1 && ends[time.period] * 100 % sessions == 0))
                << seed;
        }
    }
}

TEST(InsightsFiguresProperty, TheGridIsThatOfTheSlowReference) {
    for (quint64 seed = 0; seed < randomCases; ++seed) {
        const RandomHistory random(seed);
        const std::multiset<QDate> days = localDays(random);
        const QDate today = localDay(random, random.now);
        QDate expected = today.addDays(-51 * 7);
        expected = expected.addDays(-(expected.dayOfWeek() % 7));
        const auto weeks =
            InsightsFigures(random.history, random.calendar, random.now).weeklyData();
        for (const HeatmapDayData &cell : cells(weeks)) {
            ASSERT_EQ(localDay(random, cell.date), expected) << seed;
            ASSERT_EQ(cell.isFuture, expected > today) << seed;
            const int sessions = static_cast<int>(days.count(expected));
            ASSERT_EQ(cell.intensity, expected > today ? 0 : std::min(sessions, 4)) << seed;
            expected = expected.addDays(1);
        }
        ASSERT_EQ(cells(weeks).size(), 364U) << seed;
    }
}
