#pragma once

#include "Date.h"

#include <QDate>
#include <QLocale>
#include <QTimeZone>

#include <functional>
#include <memory>
#include <optional>

namespace tarne {

class ZoneOffsets;

/// Days from the first of the locale's week to `day`, 0 to 6. `day` must be valid.
[[nodiscard]] int daysIntoWeek(QDate day, const QLocale &locale);

/// A moment as it stands on a Gregorian calendar and clock of some time zone.
struct DateComponents {
    int year = 1;
    int month = 1; ///< 1 to 12
    int day = 1;   ///< 1 to 31
    int hour = 0;
    int minute = 0;
    int second = 0;

    friend bool operator==(const DateComponents &, const DateComponents &) = default;
};

/// The Gregorian calendar in a time zone, with the locale's names and first weekday; Gregorian also
/// where the locale's country counts its years by another one.
///
/// A value: cheap to copy, usable from any thread. Moments further from now than a hundred thousand
/// years are taken as that far; one that is no number is taken as the reference date.
class Calendar {
public:
    enum class Unit { hour, day, weekOfYear, month, year };
    enum class Granularity { day, weekOfYear, year };

    Calendar(const QTimeZone &timeZone, const QLocale &locale);

    /// The user's calendar at this moment: time zone and locale are read afresh at every call. A
    /// locale that says nothing of the user ("C") counts as American English, the language of the
    /// screens; a zone that the system does not know counts as UTC.
    [[nodiscard]] static Calendar current();

    [[nodiscard]] const QTimeZone &timeZone() const { return m_timeZone; }
    [[nodiscard]] const QLocale &locale() const { return m_locale; }

    /// The components of `date`, its fraction of a second dropped (towards the past).
    [[nodiscard]] DateComponents dateComponents(Date date) const;

    /// The moment of the components, or none when there is no such day or time. A clock time that
    /// is skipped that day counts on from before the gap (02:30 reads as 03:30); one that comes
    /// twice is the first.
    [[nodiscard]] std::optional<Date> date(const DateComponents &components) const;

    /// `date` moved by `value` units; none where the calendar ends. An hour is always 3,600
    /// seconds. The other units keep the clock time, with its fraction of a second, and the day of
    /// the month, or the month's last day when it has no such day. A clock time that is skipped or
    /// comes twice on that day is as in `date`, but of two the one with the offset from UTC of the
    /// start; a day that the zone leaves out as a whole is passed in the direction of the move.
    [[nodiscard]] std::optional<Date> dateByAdding(Unit unit, int value, Date date) const;

    /// The first moment of the day of `date`: midnight, or later where midnight is skipped.
    [[nodiscard]] Date startOfDay(Date date) const;

    /// The day of `date` in this zone.
    [[nodiscard]] QDate day(Date date) const;

    /// Days from the day of `from` to the day of `to`, whatever their clock times: the fewest by
    /// which `dateByAdding` gets there. So the days on both sides of one that the zone leaves out
    /// are a day apart.
    [[nodiscard]] qint64 daysBetween(Date from, Date to) const;

    [[nodiscard]] bool isDateInSameDay(Date date, Date other) const;
    [[nodiscard]] bool isDateInYesterday(Date date, Date now) const;

    /// Whether both lie in the same day, week or year. Weeks begin on the locale's first weekday
    /// and run on across the turn of the year.
    [[nodiscard]] bool isDateEqual(Date date, Date other, Granularity granularity) const;

    /// 1 is Sunday, 7 is Saturday.
    [[nodiscard]] int weekday(Date date) const;

private:
    QTimeZone m_timeZone;
    QLocale m_locale;
    std::shared_ptr<const ZoneOffsets> m_offsets;
};

/// Where a component gets the user's calendar; asked anew at every use.
using CurrentCalendar = std::function<Calendar()>;

} // namespace tarne
