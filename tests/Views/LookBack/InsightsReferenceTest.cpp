#include "InsightsFigures.h"

#include "RandomHistory.h"
#include "SlowCalendar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <set>

// The insights' figures against slow and obvious references over random histories, calendars and
// moments.

using namespace tarne;
using namespace Qt::StringLiterals;
using test::randomCases;
using test::RandomHistory;
using test::SlowCalendar;

namespace {

/// One random case with what the references ask of it.
struct Case {
    explicit Case(quint64 seed)
        : random(seed),
          slow(random.zone),
          outcomes(outcomesOf(random.history)),
          figures(outcomes, random.calendar, random.now),
          today(slow.day(random.now)) {
        for (const SessionOutcome &entry : outcomes)
            days.insert(slow.day(entry.sessionDate));
    }

    [[nodiscard]] std::vector<const SessionOutcome *> since(Date cutoff) const {
        std::vector<const SessionOutcome *> found;
        for (const SessionOutcome &entry : outcomes) {
            if (!(entry.sessionDate < cutoff))
                found.push_back(&entry);
        }
        return found;
    }
    [[nodiscard]] std::vector<const SessionOutcome *> ofLast30Days() const {
        return since(slow.daysBefore(30, random.now));
    }
    [[nodiscard]] int intensity(const QDate &day) const {
        return std::min(static_cast<int>(days.count(day)), 4);
    }

    RandomHistory random;
    SlowCalendar slow;
    std::vector<SessionOutcome> outcomes;
    InsightsFigures figures;
    QDate today;
    std::multiset<QDate> days;
};

QString periodOf(int hour) {
    if (hour < 5 || hour > 20)
        return u"Night"_s;
    if (hour < 12)
        return u"Morning"_s;
    return hour < 17 ? u"Afternoon"_s : u"Evening"_s;
}

/// The periods' shares, the highest taken out first, of equal ones the earlier in the day.
std::vector<std::pair<QString, int>>
sharesByRank(const std::vector<const SessionOutcome *> &entries, const SlowCalendar &slow) {
    QStringList ends;
    for (const SessionOutcome *entry : entries)
        ends += periodOf(slow.hour(entry->sessionDate));
    QStringList left{u"Morning"_s, u"Afternoon"_s, u"Evening"_s, u"Night"_s};
    const auto share = [&ends](const QString &period) {
        const auto total = static_cast<double>(ends.size());
        return ends.isEmpty() ? 0 : int(static_cast<double>(ends.count(period)) / total * 100.0);
    };
    std::vector<std::pair<QString, int>> ranked;
    while (!left.isEmpty()) {
        QString highest = left.front();
        for (const QString &period : left)
            highest = share(period) > share(highest) ? period : highest;
        ranked.emplace_back(highest, share(highest));
        left.removeOne(highest);
    }
    return ranked;
}

} // namespace

TEST(InsightsReference, Streaks) {
    for (quint64 seed = 0; seed < randomCases; ++seed) {
        const Case a(seed);
        int current = 0;
        while (a.days.contains(a.today.addDays(-current)))
            ++current;
        int longest = 0;
        for (const QDate &first : a.days) {
            int run = 0;
            while (a.days.contains(first.addDays(run)))
                ++run;
            longest = std::max(longest, run);
        }
        ASSERT_EQ(a.figures.calculateCurrentStreak(), current) << seed;
        ASSERT_EQ(a.figures.calculateLongestStreak(), longest) << seed;
    }
}

TEST(InsightsReference, TheEntriesOfTheLast30Days) {
    for (quint64 seed = 0; seed < randomCases; ++seed) {
        const Case a(seed);
        ASSERT_EQ(a.figures.last30DaysHistory(), a.ofLast30Days()) << seed;
    }
}

TEST(InsightsReference, PercentagesOfTheGoals) {
    for (quint64 seed = 0; seed < randomCases; ++seed) {
        const Case a(seed);
        int goals[3] = {};
        for (const SessionOutcome *entry : a.ofLast30Days()) {
            for (const GoalOutcome &goal : entry->goals)
                ++goals[static_cast<int>(goal.status.value_or(GoalStatus::notCompleted))];
        }
        const int total = goals[0] + goals[1] + goals[2];
        const auto rounded = [total](int count) {
            return total == 0 ? 0 : (count * 200 + total) / (total * 2);
        };
        const GoalCompletionPercentages expected{
            rounded(goals[int(GoalStatus::completed)]),
            rounded(goals[int(GoalStatus::partiallyCompleted)]),
            rounded(goals[int(GoalStatus::notCompleted)])};
        ASSERT_EQ(a.figures.goalCompletionPercentages(), expected) << seed;
    }
}

TEST(InsightsReference, PeriodsOfTheDay) {
    for (quint64 seed = 0; seed < randomCases; ++seed) {
        const Case a(seed);
        std::vector<std::pair<QString, int>> found;
        for (const ProductivityTimeData &time : a.figures.calculateProductivityTimes())
            found.emplace_back(time.period, time.percentage);
        ASSERT_EQ(found, sharesByRank(a.ofLast30Days(), a.slow)) << seed;
    }
}

TEST(InsightsReference, TheGridAndItsMonths) {
    for (quint64 seed = 0; seed < randomCases; ++seed) {
        const Case a(seed);
        QDate day = a.today.addDays(-51 * 7);
        day = day.addDays(-(day.dayOfWeek() % 7));
        const std::vector<WeekData> weeks = a.figures.weeklyData();
        ASSERT_EQ(weeks.size(), 52U) << seed;
        QStringList months;
        for (const WeekData &week : weeks) {
            ASSERT_EQ(week.days.size(), 7U) << seed;
            if (week.weekIndex % 13 == 0)
                months += a.random.calendar.locale().monthName(day.month(), QLocale::ShortFormat);
            for (const HeatmapDayData &cell : week.days) {
                ASSERT_EQ(a.slow.day(cell.date), day) << seed;
                ASSERT_EQ(cell.isFuture, day > a.today) << seed;
                ASSERT_EQ(cell.intensity, day > a.today ? 0 : a.intensity(day)) << seed;
                day = day.addDays(1);
            }
        }
        ASSERT_EQ(InsightsFigures::monthLabels(weeks, a.random.calendar), months) << seed;
    }
}

TEST(InsightsReference, EveryCellBeginsWithItsDay) {
    for (quint64 seed = 0; seed < randomCases; ++seed) {
        const Case a(seed);
        QDate day = a.today.addDays(-51 * 7);
        day = day.addDays(-(day.dayOfWeek() % 7));
        for (const WeekData &week : a.figures.weeklyData()) {
            for (const HeatmapDayData &cell : week.days) {
                ASSERT_EQ(cell.date, a.slow.startOf(day)) << seed;
                day = day.addDays(1);
            }
        }
    }
}

TEST(InsightsReference, TheTotalOfTheYear) {
    for (quint64 seed = 0; seed < randomCases; ++seed) {
        const Case a(seed);
        const auto counted = a.since(a.slow.daysBefore(51 * 7, a.random.now)).size();
        ASSERT_EQ(a.figures.totalSessionsThisYear(), static_cast<int>(counted)) << seed;
    }
}

TEST(InsightsReference, TheFlatForm) {
    for (quint64 seed = 0; seed < randomCases; ++seed) {
        const Case a(seed);
        const std::vector<HeatmapDayData> cells = a.figures.generateHeatmapData();
        ASSERT_EQ(cells.size(), 365U) << seed;
        // 365 days reach back to the day after that of a year ago, or in a leap year to the second.
        QDate day = a.today.addDays(-364);
        for (const HeatmapDayData &cell : cells) {
            ASSERT_EQ(a.slow.day(cell.date), day) << seed;
            ASSERT_FALSE(cell.isFuture) << seed;
            ASSERT_EQ(cell.intensity, a.intensity(day)) << seed;
            day = day.addDays(1);
        }
    }
}
