#pragma once

#include "Date.h"

#include <QLocale>
#include <QTimeZone>

#include <functional>

namespace tarne {

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

/// The Gregorian calendar in a time zone, with the locale's names and first weekday.
class Calendar {
public:
    Calendar(QTimeZone timeZone, QLocale locale);

    /// The user's calendar at this moment: time zone and locale are read afresh at every call.
    [[nodiscard]] static Calendar current();

    [[nodiscard]] const QTimeZone &timeZone() const { return m_timeZone; }
    [[nodiscard]] const QLocale &locale() const { return m_locale; }

    /// The components of `date`, its fraction of a second dropped (towards the past).
    [[nodiscard]] DateComponents dateComponents(Date date) const;

private:
    QTimeZone m_timeZone;
    QLocale m_locale;
};

/// Where a component gets the user's calendar; asked anew at every use.
using CurrentCalendar = std::function<Calendar()>;

} // namespace tarne
