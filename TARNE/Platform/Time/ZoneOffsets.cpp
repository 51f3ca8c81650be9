#include "ZoneOffsets.h"

#include <QDateTime>

#include <algorithm>
#include <limits>
#include <optional>

namespace tarne {

namespace {

constexpr qint64 beginningOfTime = std::numeric_limits<qint64>::min();
constexpr qint64 endOfTime = std::numeric_limits<qint64>::max();

/// No zone was ever further from UTC than this, so a wall clock's reading lies no further from the
/// moment it means.
constexpr qint64 widestOffset = qint64{16} * 60 * 60;

QDateTime utc(qint64 unixSeconds) {
    return QDateTime::fromSecsSinceEpoch(unixSeconds, Qt::UTC);
}

/// The first change behind `moment`; its moment is invalid when there is none. Asked for at the
/// last change of a zone's table, Qt 6.4 says none even where a rule goes on.
QTimeZone::OffsetData nextTransition(const QTimeZone &zone, const QDateTime &moment) {
    const QTimeZone::OffsetData next = zone.nextTransition(moment);
    return next.atUtc.isValid() ? next : zone.nextTransition(moment.addSecs(1));
}

} // namespace

ZoneOffsets::ZoneOffsets(const QTimeZone &zone) : m_zone(zone) {
    if (!zone.hasTransitions()) {
        m_stretches.push_back({beginningOfTime, endOfTime, zone.offsetFromUtc(utc(0))});
        return;
    }
    const QDateTime last(QDate(2050, 1, 1), QTime(0, 0), Qt::UTC);
    QDateTime begin(QDate(2000, 1, 1), QTime(0, 0), Qt::UTC);
    int offset = zone.offsetFromUtc(begin);
    // One after the other: QTimeZone::transitions leaves out what follows from a rule.
    while (begin < last) {
        const QTimeZone::OffsetData next = nextTransition(zone, begin);
        const QDateTime end = next.atUtc.isValid() ? std::min(next.atUtc, last) : last;
        m_stretches.push_back({begin.toSecsSinceEpoch(), end.toSecsSinceEpoch(), offset});
        begin = end;
        offset = next.offsetFromUtc;
    }
}

ZoneOffsets::Stretch ZoneOffsets::stretchAt(qint64 unixSeconds) const {
    if (unixSeconds < m_stretches.front().begin || unixSeconds >= m_stretches.back().end)
        return askZone(unixSeconds);
    const auto next = std::upper_bound(
        m_stretches.begin(), m_stretches.end(), unixSeconds,
        [](qint64 seconds, const Stretch &stretch) { return seconds < stretch.begin; });
    return *std::prev(next);
}

ZoneOffsets::Stretch ZoneOffsets::askZone(qint64 unixSeconds) const {
    const QDateTime moment = utc(unixSeconds);
    Stretch stretch{beginningOfTime, endOfTime, m_zone.offsetFromUtc(moment)};
    if (const auto before = m_zone.previousTransition(moment.addSecs(1)); before.atUtc.isValid()) {
        stretch.begin = before.atUtc.toSecsSinceEpoch();
        stretch.offset = before.offsetFromUtc;
    }
    if (const auto after = nextTransition(m_zone, moment); after.atUtc.isValid())
        stretch.end = after.atUtc.toSecsSinceEpoch();
    return stretch;
}

ZoneOffsets::WallTime ZoneOffsets::resolve(qint64 wallSeconds, int preferredOffset) const {
    std::optional<qint64> found;
    Stretch stretch = stretchAt(wallSeconds - widestOffset);
    WallTime skipped{wallSeconds - stretch.offset, wallSeconds - stretch.offset};
    while (true) {
        const qint64 moment = wallSeconds - stretch.offset;
        if (moment >= stretch.begin && moment < stretch.end) {
            if (stretch.offset == preferredOffset)
                return {moment, moment};
            found = found.value_or(moment);
        }
        if (stretch.end > wallSeconds + widestOffset)
            break;
        const Stretch next = stretchAt(stretch.end);
        if (moment >= stretch.end && wallSeconds - next.offset < next.begin)
            skipped = {moment, wallSeconds - next.offset};
        stretch = next;
    }
    return found ? WallTime{*found, *found} : skipped;
}

} // namespace tarne
