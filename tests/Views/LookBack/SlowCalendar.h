#pragma once

#include "Date.h"

#include <QDateTime>
#include <QTimeZone>

#include <cmath>
#include <map>
#include <set>
#include <vector>

namespace tarne::test {

/// Calendar reckoning for the slow references: by Qt's own zones, and where clocks are set by
/// trying every offset that the zone has around that day.
class SlowCalendar {
public:
    explicit SlowCalendar(const QTimeZone &zone) : m_zone(zone), m_starts(startsIn(zone)) {}

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

    /// The first moment of a day of the years 2015 to 2029.
    [[nodiscard]] Date startOf(const QDate &day) const {
        return m_starts->at(static_cast<std::size_t>(firstDay.daysTo(day)));
    }

private:
    [[nodiscard]] static qint64 whole(Date date) {
        return static_cast<qint64>(std::floor(date.secondsSince1970()));
    }
    [[nodiscard]] qint64 offsetAt(qint64 moment) const {
        return m_zone.offsetFromUtc(QDateTime::fromSecsSinceEpoch(moment, Qt::UTC));
    }

    static constexpr int dayCount = 15 * 366;
    inline static const QDate firstDay{2015, 1, 1};

    using Starts = std::vector<Date>;

    /// Found by halving the two days around each day, once a zone.
    [[nodiscard]] static const Starts *startsIn(const QTimeZone &zone) {
        static std::map<QByteArray, Starts> starts;
        Starts &found = starts[zone.id()];
        for (QDate day = firstDay; found.size() < dayCount; day = day.addDays(1))
            found.push_back(findStart(day, zone));
        return &found;
    }
    [[nodiscard]] static Date findStart(const QDate &day, const QTimeZone &zone) {
        const qint64 noon = QDateTime(day, QTime(12, 0), QTimeZone::utc()).toSecsSinceEpoch();
        qint64 before = noon - 48 * 3600;
        qint64 within = noon + 48 * 3600;
        while (within - before > 1) {
            const qint64 middle = before + (within - before) / 2;
            (QDateTime::fromSecsSinceEpoch(middle, zone).date() < day ? before : within) = middle;
        }
        return Date::fromUnixSeconds(static_cast<double>(within));
    }

    QTimeZone m_zone;
    const Starts *m_starts;
};

} // namespace tarne::test
