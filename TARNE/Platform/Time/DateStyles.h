#pragma once

#include <QDate>
#include <QLocale>
#include <QString>
#include <QTime>

#include <memory>

namespace tarne {

/// How a locale writes a day and a clock time, in its own order, words and digits, by CLDR as ICU
/// has it. The calendar is the Gregorian one, also for days before 1582. A language that ICU does
/// not know is written as American English, the language of the screens.
///
/// It knows no time zone: days and clock times are those of the caller's calendar. Usable from any
/// thread.
class DateStyles {
public:
    enum class Style {
        ShortTime,            ///< "3:30 PM"
        LongDate,             ///< "March 2, 2026"
        FullDate,             ///< "Monday, March 2, 2026"
        FullDateAndShortTime, ///< "Monday, March 2, 2026 at 3:30 PM"
        MonthAndYear,         ///< "March 2026", as the title of a month
    };

    /// The styles of `locale`. Those of the locale that was asked for last are kept, since a
    /// process has one and ICU takes milliseconds to make them.
    [[nodiscard]] static std::shared_ptr<const DateStyles> of(const QLocale &locale);

    explicit DateStyles(const QLocale &locale);
    ~DateStyles();
    DateStyles(const DateStyles &) = delete;
    DateStyles &operator=(const DateStyles &) = delete;

    [[nodiscard]] QString text(Style style, QDate day, QTime time = QTime(0, 0)) const;
    [[nodiscard]] QString shortTime(QTime time) const;

    /// The pattern of the short time in the letters of CLDR, "h:mm a".
    [[nodiscard]] QString shortTimePattern() const;
    /// What stands for the pattern's "a": "AM" or "PM".
    [[nodiscard]] QString halfOfDay(bool isAfternoon) const;

private:
    class Formats;
    std::unique_ptr<Formats> m_formats;
};

} // namespace tarne
