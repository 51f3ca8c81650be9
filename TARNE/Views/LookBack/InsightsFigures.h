#pragma once

#include "Calendar.h"
#include "RandomUuid.h"
#include "SessionOutcome.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <vector>

namespace tarne {

/// One cell of the heat map.
struct HeatmapDayData {
    QUuid id = randomUuid(); ///< A cell's identity lasts for one calculation.
    Date date = {};          ///< Start of the day.
    int intensity = 0;       ///< Sessions on that day, at most 4.
    bool isFuture = false;   ///< The day lies after today; its intensity is 0 then.
};

/// One column of the heat map.
struct WeekData {
    QUuid id = randomUuid();
    int weekIndex = 0;                     ///< 0 is the oldest, 51 the current week.
    std::vector<HeatmapDayData> days = {}; ///< Sunday first.
};

/// How many of the last 30 days' sessions ended in one period of the day.
struct ProductivityTimeData {
    QString period; ///< "Morning", "Afternoon", "Evening" or "Night"; the row's identity.
    QString icon;   ///< The period's emoji.
    int percentage; ///< 0 to 100, the fraction dropped.

    friend bool operator==(const ProductivityTimeData &, const ProductivityTimeData &) = default;
};

/// Shares of the goals in whole percent, each rounded by itself: the sum may be 99 or 101.
struct GoalCompletionPercentages {
    int completed = 0;
    int partiallyCompleted = 0;
    int notCompleted = 0;

    friend bool operator==(const GoalCompletionPercentages &,
                           const GoalCompletionPercentages &) = default;
};

/// The statistics of one drawing of the insights: pure functions of a history, a calendar and the
/// present moment. The history must outlive it.
class InsightsFigures {
public:
    InsightsFigures(const std::vector<SessionOutcome> &history, Calendar calendar, Date now);

    /// The entries since this clock time 30 days ago, in their order.
    [[nodiscard]] std::vector<const SessionOutcome *> last30DaysHistory() const;

    // A zone may leave a whole day out, as Apia did on 2011-12-30. Such a day ends no streak.

    /// Days with sessions in a row up to today; 0 as long as today has none.
    [[nodiscard]] int calculateCurrentStreak() const;
    /// The longest row of days with sessions that ever was.
    [[nodiscard]] int calculateLongestStreak() const;

    /// Over all goals of the last 30 days. One without a verdict counts as not completed.
    [[nodiscard]] GoalCompletionPercentages goalCompletionPercentages() const;

    /// The four periods, most sessions first; a session is classed by the hour in which it ended.
    [[nodiscard]] std::vector<ProductivityTimeData> calculateProductivityTimes() const;

    /// 52 weeks of seven days, from Sunday to Saturday whatever the locale, up to the current week.
    [[nodiscard]] std::vector<WeekData> weeklyData() const;
    /// Sessions since this clock time 51 weeks ago.
    [[nodiscard]] int totalSessionsThisYear() const;

    /// The heat map as 365 days up to today. No screen reads it.
    [[nodiscard]] std::vector<HeatmapDayData> generateHeatmapData() const;

    /// Labels of the grid's rows, Sunday first.
    [[nodiscard]] static QStringList dayLabels();
    /// The months in which the columns 0, 13, 26 and 39 of `weeks` begin.
    [[nodiscard]] static QStringList monthLabels(const std::vector<WeekData> &weeks,
                                                 const Calendar &calendar);

private:
    [[nodiscard]] Date moved(Calendar::Unit unit, int value) const;
    [[nodiscard]] HeatmapDayData cell(Date startOfDay) const;

    const std::vector<SessionOutcome> &m_history;
    Calendar m_calendar;
    Date m_now;
    Date m_startOfToday;
    QHash<QDate, int> m_sessionsPerDay;
};

} // namespace tarne
