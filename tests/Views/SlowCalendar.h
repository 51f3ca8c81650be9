#pragma once

#include "Date.h"

#include <QDateTime>
#include <QTimeZone>

#include <cmath>
#include <set>

namespace tarne::test {

/// Calendar reckoning for the slow references: by Qt's own zones, and where clocks are set by
/// trying every offset that the zone has around that day.
class SlowCalendar {
public:
    explicit SlowCalendar(QTimeZone zone) : m_zone(std::move(zone)) {}

    [[nodiscard]] QDateTime local(Date date) const {
        return QDateTime::fromSecsSinceEpoch(whole(date), m_zone);
    }
    [[nodiscard]] QDate day(Date date) const { return local(date).date(); }
    [[nodiscard]] int hour(Date date) const { return local(date).time().hour(); }

    /// The same clock time on another day.
    [[nodiscard]] Date onDay(const QDate &day, Date date) const {
        const qint64 wall = QDateTime(day, local(date).time(), QTimeZone::utc()).toSecsSinceEpoch();
        const qint64 usual = offsetAt(whole(date));
        std::set<qint64> found;
        qint64 offsetBefore = offsetAt(wall - 36 * 3600);
        for (qint64 probe = wall - 36 * 3600; probe <= wall + 36 * 3600; probe += 3600) {
            if (probe + offsetAt(probe) < wall)
                offsetBefore = offsetAt(probe);
            if (offsetAt(wall - offsetAt(probe)) == offsetAt(probe))
                found.insert(wall - offsetAt(probe));
        }
        const qint64 moment = found.contains(wall - usual) ? wall - usual
                              : !found.empty()             ? *found.begin()
                                                           : wall - offsetBefore;
        return date + static_cast<double>(moment - whole(date));
    }
    [[nodiscard]] Date daysBefore(int days, Date date) const {
        return onDay(day(date).addDays(-days), date);
    }

    /// The first moment of a day, found by halving the two days around it.
    [[nodiscard]] Date startOf(const QDate &day) const {
        const qint64 noon = QDateTime(day, QTime(12, 0), QTimeZone::utc()).toSecsSinceEpoch();
        qint64 before = noon - 48 * 3600;
        qint64 within = noon + 48 * 3600;
        while (within - before > 1) {
            const qint64 middle = before + (within - before) / 2;
            (QDateTime::fromSecsSinceEpoch(middle, m_zone).date() < day ? before : within) = middle;
        }
        return Date::fromUnixSeconds(static_cast<double>(within));
    }

private:
    [[nodiscard]] static qint64 whole(Date date) {
        return static_cast<qint64>(std::floor(date.secondsSince1970()));
    }
    [[nodiscard]] qint64 offsetAt(qint64 moment) const {
        return m_zone.offsetFromUtc(QDateTime::fromSecsSinceEpoch(moment, Qt::UTC));
    }

    QTimeZone m_zone;
};

} // namespace tarne::test
