#pragma once

#include <QTimeZone>

#include <vector>

namespace tarne {

/// A time zone's offsets from UTC over time, for many look-ups in a row.
///
/// QTimeZone searches its rules anew at each question; a drawing of the insights asks tens of
/// thousands of times. Transitions of the years in which sessions lie are laid out once, other
/// years ask QTimeZone. Immutable.
class ZoneOffsets {
public:
    /// A stretch of time with one offset: the Unix seconds `begin` <= t < `end`.
    struct Stretch {
        qint64 begin;
        qint64 end;
        int offset; ///< Seconds east of UTC.
    };

    explicit ZoneOffsets(const QTimeZone &zone);

    [[nodiscard]] Stretch stretchAt(qint64 unixSeconds) const;
    [[nodiscard]] int offsetAt(qint64 unixSeconds) const { return stretchAt(unixSeconds).offset; }

    /// What a wall clock's reading (seconds as if the zone were UTC) means.
    struct WallTime {
        /// The moment at which clocks show the reading. One that they show twice: the moment whose
        /// offset is `preferredOffset`, else the first. One that they skip: what a clock that was
        /// not set forward would mean by it.
        qint64 moment;
        /// For a skipped reading, what a clock that was set forward early would mean by it;
        /// otherwise `moment`.
        qint64 momentBeforeGap;
    };
    [[nodiscard]] WallTime resolve(qint64 wallSeconds, int preferredOffset) const;

private:
    [[nodiscard]] Stretch askZone(qint64 unixSeconds) const;

    QTimeZone m_zone;
    std::vector<Stretch> m_stretches; ///< Without gaps between them, in order.
};

} // namespace tarne
