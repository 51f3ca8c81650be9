// What the screens make of a history with any moments and lengths in it.

#include "DurationText.h"
#include "FuzzTargets.h"
#include "HistoryGrouping.h"
#include "InsightsFigures.h"
#include "SessionHistoryEntry.h"

#include <QSet>
#include <QTimeZone>

namespace tarne::fuzz {

namespace {

using History = std::vector<SessionHistoryEntry>;

bool isPercentage(int value) {
    return value >= 0 && value <= 100;
}

void requireFigures(const History &history, const Calendar &calendar, Date now) {
    const std::vector<SessionOutcome> outcomes = outcomesOf(history);
    const InsightsFigures figures(outcomes, calendar, now);
    require(figures.last30DaysHistory().size() <= history.size(), "no entry comes from nowhere");
    require(figures.calculateCurrentStreak() <= figures.calculateLongestStreak(),
            "no streak is longer than the longest");
    const auto goals = figures.goalCompletionPercentages();
    require(isPercentage(goals.completed) && isPercentage(goals.partiallyCompleted) &&
                isPercentage(goals.notCompleted),
            "shares of goals are percentages");
    const auto times = figures.calculateProductivityTimes();
    require(times.size() == 4, "a day has four periods");
    for (const ProductivityTimeData &time : times)
        require(isPercentage(time.percentage), "shares of periods are percentages");
    const auto weeks = figures.weeklyData();
    require(weeks.size() == 52, "the heat map has 52 weeks");
    for (const WeekData &week : weeks) {
        require(week.days.size() == 7, "a week has seven days");
        for (const HeatmapDayData &day : week.days)
            require(day.intensity >= 0 && day.intensity <= 4, "there are five intensities");
    }
    require(InsightsFigures::monthLabels(weeks, calendar).size() == 4, "there are four months");
}

void requireGroups(const History &history, const Calendar &calendar, Date now) {
    std::size_t entries = 0;
    QSet<QString> keys;
    for (const HistoryGroup &group : HistoryGrouping(calendar, now).groupedEntries(history)) {
        require(!group.key.isEmpty() && !keys.contains(group.key), "a group has its own label");
        require(!group.value.empty(), "a group has entries");
        keys.insert(group.key);
        entries += group.value.size();
    }
    require(entries == history.size(), "every entry has one group");
}

} // namespace

void insights(Input input) {
    const auto history = decodeHistory(input.toByteArray());
    if (!history)
        return;
    const Calendar calendar(QTimeZone("America/Sao_Paulo"), QLocale::c());
    const Date now = Date::fromReferenceSeconds(794232000.5);
    requireFigures(*history, calendar, now);
    requireGroups(*history, calendar, now);
    for (const SessionHistoryEntry &entry : *history)
        require(hoursMinutesSeconds(entry.duration).size() >= 8, "a length has its digits");
}

} // namespace tarne::fuzz
