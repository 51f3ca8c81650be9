#include "HistoryGrouping.h"

#include "DateFormatter.h"

#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarne {

HistoryGrouping::HistoryGrouping(Calendar calendar, Date now)
    : m_calendar(std::move(calendar)), m_now(now) {}

QString HistoryGrouping::formatDateForGrouping(Date date) const {
    if (m_calendar.isDateInSameDay(date, m_now))
        return u"Today"_s;
    if (m_calendar.isDateInYesterday(date, m_now))
        return u"Yesterday"_s;
    const DateFormatter formatter(m_calendar);
    if (m_calendar.isDateEqual(date, m_now, Calendar::Granularity::weekOfYear))
        return formatter.weekdayName(date);
    if (m_calendar.isDateEqual(date, m_now, Calendar::Granularity::year))
        return formatter.monthAndDay(date);
    return formatter.monthDayAndYear(date);
}

Date HistoryGrouping::parseGroupingDate(const QString &key) const {
    if (key == "Today"_L1)
        return m_now;
    if (key == "Yesterday"_L1)
        return m_calendar.dateByAdding(Calendar::Unit::day, -1, m_now).value_or(m_now);
    const DateFormatter formatter(m_calendar);
    if (const auto date = formatter.fromMonthDayAndYear(key))
        return *date;
    if (const auto date = formatter.fromMonthAndDay(key))
        return *date;
    return formatter.fromWeekdayName(key).value_or(m_now);
}

std::vector<HistoryGroup>
HistoryGrouping::groupedEntries(const std::vector<SessionHistoryEntry> &entries) const {
    struct DatedGroup {
        Date date;
        HistoryGroup group;
    };
    std::vector<DatedGroup> groups;
    // All moments of a day have the same label, so each day is worded once.
    QHash<QDate, std::size_t> groupOfDay;
    QHash<QString, std::size_t> groupOfLabel;
    for (const SessionHistoryEntry &entry : entries) {
        const QDate day = m_calendar.day(entry.sessionDate);
        auto found = groupOfDay.constFind(day);
        if (found == groupOfDay.cend()) {
            const QString label = formatDateForGrouping(entry.sessionDate);
            if (!groupOfLabel.contains(label)) {
                groupOfLabel.insert(label, groups.size());
                groups.push_back({parseGroupingDate(label), {label, {}}});
            }
            found = groupOfDay.insert(day, groupOfLabel[label]);
        }
        groups[*found].group.value.push_back(entry);
    }
    std::ranges::stable_sort(
        groups, [](const DatedGroup &a, const DatedGroup &b) { return a.date > b.date; });
    std::vector<HistoryGroup> result;
    result.reserve(groups.size());
    for (DatedGroup &dated : groups)
        result.push_back(std::move(dated.group));
    return result;
}

void HistoryGrouping::sortForDisplay(std::vector<SessionHistoryEntry> &entries) {
    std::ranges::stable_sort(entries,
                             [](const SessionHistoryEntry &a, const SessionHistoryEntry &b) {
                                 return a.sessionDate > b.sessionDate;
                             });
}

} // namespace tarne
