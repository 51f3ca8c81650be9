#pragma once

#ifndef Q_MOC_RUN // moc of Qt 6.4 stumbles over the concepts in this header.
#include <compare>
#endif

namespace tarne {

/// An absolute moment, independent of calendar and time zone.
///
/// It is the double that documents and the defaults store hold: seconds, with a fraction, since
/// 2001-01-01T00:00:00 UTC. A value that was read is written back bit for bit, so it never passes
/// through a coarser type on the way.
class Date {
public:
    /// Seconds from the Unix epoch to the reference date, 2001-01-01T00:00:00 UTC.
    static constexpr double unixSecondsOfReferenceDate = 978307200.0;

    constexpr Date() = default;

    static constexpr Date fromReferenceSeconds(double seconds) { return Date(seconds); }
    static constexpr Date fromUnixSeconds(double seconds) {
        return Date(seconds - unixSecondsOfReferenceDate);
    }

    constexpr double secondsSinceReferenceDate() const { return m_seconds; }
    constexpr double secondsSince1970() const { return m_seconds + unixSecondsOfReferenceDate; }

    friend constexpr Date operator+(Date date, double seconds) {
        return Date(date.m_seconds + seconds);
    }
    friend constexpr Date operator-(Date date, double seconds) {
        return Date(date.m_seconds - seconds);
    }
    /// The seconds from `b` to `a`; negative when `a` is the earlier.
    friend constexpr double operator-(Date a, Date b) { return a.m_seconds - b.m_seconds; }

    friend constexpr auto operator<=>(const Date &, const Date &) = default;

private:
    explicit constexpr Date(double seconds) : m_seconds(seconds) {}

    double m_seconds = 0.0;
};

} // namespace tarne
