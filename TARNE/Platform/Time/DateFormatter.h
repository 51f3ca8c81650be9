#pragma once

#include "Calendar.h"

#include <QString>

#include <optional>

namespace tarne {

/// Writes dates as the user reads them, in the names, digits and clock of the calendar's locale and
/// in its time zone, and reads three of the forms back. Four forms are fixed patterns in the names
/// and digits of every language; the others follow the locale's style.
class DateFormatter {
public:
    explicit DateFormatter(Calendar calendar) : m_calendar(std::move(calendar)) {}

    /// "Mar" ("MMM").
    [[nodiscard]] QString shortMonth(Date date) const;
    /// "Mar 2" ("MMM d").
    [[nodiscard]] QString monthAndDay(Date date) const;
    /// "Mar 2, 2026" ("MMM d, yyyy").
    [[nodiscard]] QString monthDayAndYear(Date date) const;
    /// "Monday" ("EEEE").
    [[nodiscard]] QString weekdayName(Date date) const;
    /// The locale's short time, "3:30 PM".
    [[nodiscard]] QString shortTime(Date date) const;
    /// The locale's long date, without the weekday, "March 2, 2026".
    [[nodiscard]] QString longDate(Date date) const;
    /// The locale's full date and short time, "Monday, March 2, 2026 at 3:30 PM".
    [[nodiscard]] QString fullDateAndShortTime(Date date) const;

    // Back from a text to the start of its day, or none when it has another form.

    [[nodiscard]] std::optional<Date> fromMonthDayAndYear(QStringView text) const;
    /// A day of a leap year below every year that a text can have.
    [[nodiscard]] std::optional<Date> fromMonthAndDay(QStringView text) const;
    /// A day of the first whole week of that year, so that weekdays are ordered as in the locale's
    /// week.
    [[nodiscard]] std::optional<Date> fromWeekdayName(QStringView text) const;

private:
    [[nodiscard]] QString formatted(Date date, QStringView pattern) const;
    [[nodiscard]] std::optional<Date> startOfDay(QDate day) const;

    Calendar m_calendar;
};

} // namespace tarne
