#pragma once

#include "InsightsFigures.h"
#include "SessionHistoryEntry.h"

#include <gtest/gtest.h>

#include <vector>

namespace tarne::test {

/// The first moment that the calendar reckons with: nothing lies before it.
inline const Date calendarBegins = Date::fromUnixSeconds(-1e5 * 366 * 86400);

/// A history told in clock times of one zone, looked at on 2026-03-04, a Wednesday, at 15:00.
class Told {
public:
    explicit Told(const char *zone = "Europe/Berlin")
        : calendar(QTimeZone(QByteArray(zone)), QLocale(QStringLiteral("en_US"))),
          now(at({2026, 3, 4, 15})) {}

    Date at(const DateComponents &components) const { return *calendar.date(components); }
    Date daysAgo(int days) const { return *calendar.dateByAdding(Calendar::Unit::day, -days, now); }

    Told &session(Date date, std::vector<std::optional<GoalStatus>> statuses = {}) {
        SessionHistoryEntry entry{.sessionDate = date, .goals = {}, .duration = 1500};
        for (const auto &status : statuses)
            entry.goals.push_back({.text = QStringLiteral("goal"), .status = status});
        history.push_back(entry);
        return *this;
    }
    Told &sessionsDaysAgo(std::initializer_list<int> days) {
        for (const int day : days)
            session(daysAgo(day));
        return *this;
    }
    InsightsFigures figures() const {
        outcomes = outcomesOf(history);
        return InsightsFigures(outcomes, calendar, now);
    }

    Calendar calendar;
    Date now;
    std::vector<SessionHistoryEntry> history;
    mutable std::vector<SessionOutcome> outcomes; ///< What the last figures were made of.
};

/// All cells of the grid, column by column.
inline std::vector<HeatmapDayData> cells(const std::vector<WeekData> &weeks) {
    std::vector<HeatmapDayData> all;
    for (const WeekData &week : weeks)
        all.insert(all.end(), week.days.begin(), week.days.end());
    return all;
}

inline int intensityOfToday(const Told &told) {
    const std::vector<WeekData> weeks = told.figures().weeklyData();
    for (const HeatmapDayData &cell : cells(weeks)) {
        if (cell.date == told.calendar.startOfDay(told.now))
            return cell.intensity;
    }
    ADD_FAILURE() << "no cell of today";
    return -1;
}

} // namespace tarne::test
