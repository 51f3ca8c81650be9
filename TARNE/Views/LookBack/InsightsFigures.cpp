#include "InsightsFigures.h"

#include "DateFormatter.h"

#include <algorithm>
#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

using Unit = Calendar::Unit;

constexpr int weeksOfGrid = 52;
constexpr int weeksPerMonthLabel = 13;
constexpr int highestIntensity = 4;

enum Period { morning, afternoon, evening, night, periodCount };

Period periodOfHour(int hour) {
    if (hour >= 5 && hour <= 11)
        return morning;
    if (hour >= 12 && hour <= 16)
        return afternoon;
    if (hour >= 17 && hour <= 20)
        return evening;
    return night;
}

int roundedPercentage(qint64 count, qint64 total) {
    return static_cast<int>(
        std::lround(static_cast<double>(count) / static_cast<double>(total) * 100.0));
}

int truncatedPercentage(qint64 count, qint64 total) {
    if (total == 0)
        return 0;
    return static_cast<int>(static_cast<double>(count) / static_cast<double>(total) * 100.0);
}

} // namespace

InsightsFigures::InsightsFigures(const std::vector<SessionOutcome> &history, Calendar calendar,
                                 Date now)
    : m_history(history),
      m_calendar(std::move(calendar)),
      m_now(now),
      m_startOfToday(m_calendar.startOfDay(now)) {
    for (const SessionOutcome &entry : history)
        ++m_sessionsPerDay[m_calendar.day(entry.sessionDate)];
}

Date InsightsFigures::moved(Unit unit, int value) const {
    return m_calendar.dateByAdding(unit, value, m_now).value_or(m_now);
}

std::vector<const SessionOutcome *> InsightsFigures::last30DaysHistory() const {
    const Date cutoff = moved(Unit::day, -30);
    std::vector<const SessionOutcome *> recent;
    for (const SessionOutcome &entry : m_history) {
        if (entry.sessionDate >= cutoff)
            recent.push_back(&entry);
    }
    return recent;
}

int InsightsFigures::calculateCurrentStreak() const {
    Date currentDate = m_startOfToday;
    int streak = 0;
    while (m_sessionsPerDay.contains(m_calendar.day(currentDate))) {
        ++streak;
        const std::optional<Date> previous = m_calendar.dateByAdding(Unit::day, -1, currentDate);
        if (!previous)
            break;
        currentDate = *previous;
    }
    return streak;
}

int InsightsFigures::calculateLongestStreak() const {
    std::vector<Date> days;
    for (auto day = m_sessionsPerDay.keyBegin(); day != m_sessionsPerDay.keyEnd(); ++day)
        days.push_back(m_calendar.date({day->year(), day->month(), day->day()}).value_or(m_now));
    if (days.empty())
        return 0;
    std::ranges::sort(days, std::greater<>());
    int longest = 0;
    int run = 1;
    for (std::size_t i = 1; i < days.size(); ++i) {
        if (m_calendar.daysBetween(days[i], days[i - 1]) == 1) {
            ++run;
        } else {
            longest = std::max(longest, run);
            run = 1;
        }
    }
    return std::max(longest, run);
}

GoalCompletionPercentages InsightsFigures::goalCompletionPercentages() const {
    qint64 completed = 0;
    qint64 partiallyCompleted = 0;
    qint64 total = 0;
    for (const SessionOutcome *entry : last30DaysHistory()) {
        for (const GoalOutcome &goal : entry->goals) {
            completed += goal.status == GoalStatus::completed;
            partiallyCompleted += goal.status == GoalStatus::partiallyCompleted;
            ++total;
        }
    }
    if (total == 0)
        return {};
    return {roundedPercentage(completed, total), roundedPercentage(partiallyCompleted, total),
            roundedPercentage(total - completed - partiallyCompleted, total)};
}

std::vector<ProductivityTimeData> InsightsFigures::calculateProductivityTimes() const {
    std::array<qint64, periodCount> counts{};
    qint64 total = 0;
    for (const SessionOutcome *entry : last30DaysHistory()) {
        const DateComponents end = m_calendar.dateComponents(entry->sessionDate);
        ++counts[periodOfHour(end.hour)];
        ++total;
    }
    std::vector<ProductivityTimeData> times{
        {u"Morning"_s, u"🌅"_s, truncatedPercentage(counts[morning], total)},
        {u"Afternoon"_s, u"☀️"_s, truncatedPercentage(counts[afternoon], total)},
        {u"Evening"_s, u"🌙"_s, truncatedPercentage(counts[evening], total)},
        {u"Night"_s, u"🌃"_s, truncatedPercentage(counts[night], total)}};
    std::ranges::stable_sort(
        times, [](const auto &a, const auto &b) { return a.percentage > b.percentage; });
    return times;
}

HeatmapDayData InsightsFigures::cell(Date startOfDay) const {
    if (startOfDay > m_startOfToday)
        return {.date = startOfDay, .isFuture = true};
    const int sessions = m_sessionsPerDay.value(m_calendar.day(startOfDay));
    return {.date = startOfDay, .intensity = std::min(sessions, highestIntensity)};
}

std::vector<WeekData> InsightsFigures::weeklyData() const {
    const auto anchor = m_calendar.dateByAdding(Unit::weekOfYear, 1 - weeksOfGrid, m_now);
    if (!anchor)
        return {};
    const auto start = m_calendar.dateByAdding(Unit::day, 1 - m_calendar.weekday(*anchor), *anchor);
    if (!start)
        return {};
    std::vector<WeekData> weeks;
    Date weekStart = *start;
    for (int weekIndex = 0; weekIndex < weeksOfGrid; ++weekIndex) {
        WeekData week{.weekIndex = weekIndex};
        for (int dayOffset = 0; dayOffset < 7; ++dayOffset) {
            if (const auto date = m_calendar.dateByAdding(Unit::day, dayOffset, weekStart))
                week.days.push_back(cell(m_calendar.startOfDay(*date)));
        }
        weeks.push_back(std::move(week));
        weekStart = m_calendar.dateByAdding(Unit::weekOfYear, 1, weekStart).value_or(weekStart);
    }
    return weeks;
}

int InsightsFigures::totalSessionsThisYear() const {
    const Date cutoff = moved(Unit::weekOfYear, 1 - weeksOfGrid);
    return static_cast<int>(std::ranges::count_if(
        m_history, [cutoff](const SessionOutcome &e) { return e.sessionDate >= cutoff; }));
}

std::vector<HeatmapDayData> InsightsFigures::generateHeatmapData() const {
    constexpr int days = 365;
    const Date cutoff = moved(Unit::year, -1);
    std::vector<HeatmapDayData> cells;
    for (int i = 0; i < days; ++i) {
        const auto date = m_calendar.dateByAdding(Unit::day, i - (days - 1), m_now);
        if (!date)
            continue;
        HeatmapDayData day = cell(m_calendar.startOfDay(*date));
        if (day.date < cutoff)
            day.intensity = 0;
        cells.push_back(day);
    }
    return cells;
}

QStringList InsightsFigures::dayLabels() {
    return {QString(), u"Mon"_s, QString(), u"Wed"_s, QString(), u"Fri"_s, QString()};
}

QStringList InsightsFigures::monthLabels(const std::vector<WeekData> &weeks,
                                         const Calendar &calendar) {
    const DateFormatter formatter(calendar);
    QStringList labels;
    for (int index = 0; index < weeksOfGrid; index += weeksPerMonthLabel) {
        const auto week = std::ranges::find_if(
            weeks, [index](const WeekData &w) { return w.weekIndex == index; });
        if (week != weeks.end() && !week->days.empty())
            labels += formatter.shortMonth(week->days.front().date);
    }
    return labels;
}

} // namespace tarne
