#pragma once

#include "Calendar.h"
#include "SessionHistoryEntry.h"

#include <QString>

#include <vector>

namespace tarne {

/// Sessions under one date label.
struct HistoryGroup {
    QString key; ///< The label; the group's identity.
    std::vector<SessionHistoryEntry> value;
};

/// How the history is cut into groups and how these are ordered: pure functions of entries, the
/// user's calendar and the present moment.
class HistoryGrouping {
public:
    HistoryGrouping(Calendar calendar, Date now);

    /// "Today", "Yesterday", the weekday within this week, "Mar 2" within this year, else
    /// "Mar 2, 2025"; words in the locale's language where the locale has them.
    [[nodiscard]] QString formatDateForGrouping(Date date) const;

    /// The date by which a label is ordered, whatever it was made of. Labels without a year lie far
    /// in the past, below all that have one. A text that is no label counts as now.
    [[nodiscard]] Date parseGroupingDate(const QString &key) const;

    /// The groups, that with the later label date first; the entries of each keep their order.
    [[nodiscard]] std::vector<HistoryGroup>
    groupedEntries(const std::vector<SessionHistoryEntry> &entries) const;

    /// As a group shows its entries: the later first.
    static void sortForDisplay(std::vector<SessionHistoryEntry> &entries);

private:
    Calendar m_calendar;
    Date m_now;
};

} // namespace tarne
