#include "DateFormatter.h"

#include "DateStyles.h"

#include <QTime>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

/// Stands in for the year that a text leaves out: a leap year below every year that a text can
/// have.
constexpr int yearOfYearlessTexts = -5;

/// A number in the locale's digits or in ASCII ones, without signs or separators.
std::optional<int> number(QStringView text) {
    // Not counted in 16-bit units: some scripts' digits take two.
    const QList<uint> characters = text.toUcs4();
    if (characters.isEmpty() || characters.size() > 6)
        return std::nullopt;
    int value = 0;
    for (const uint c : characters) {
        const int digit = QChar::digitValue(c);
        if (digit < 0)
            return std::nullopt;
        value = value * 10 + digit;
    }
    return value;
}

struct MonthAndRest {
    int month;
    QStringView rest;
};

/// The month whose short name `text` begins with and what stands behind the name and a blank. Of
/// names that begin alike ("1月", "11月" do not, but "Ma", "Mai" would) the longest.
std::optional<MonthAndRest> leadingMonth(QStringView text, const QLocale &locale) {
    std::optional<MonthAndRest> found;
    qsizetype longest = 0;
    for (int month = 1; month <= 12; ++month) {
        const QString name = locale.monthName(month, QLocale::ShortFormat) + u' ';
        if (name.size() > longest && text.startsWith(name)) {
            found = MonthAndRest{month, text.sliced(name.size())};
            longest = name.size();
        }
    }
    return found;
}

QTime clockTime(const DateComponents &components) {
    return QTime(components.hour, components.minute, components.second);
}

} // namespace

QString DateFormatter::formatted(Date date, QStringView pattern) const {
    return m_calendar.locale().toString(m_calendar.day(date), pattern);
}

QString DateFormatter::shortMonth(Date date) const {
    return formatted(date, u"MMM");
}

QString DateFormatter::monthAndDay(Date date) const {
    return formatted(date, u"MMM d");
}

QString DateFormatter::monthDayAndYear(Date date) const {
    return formatted(date, u"MMM d, yyyy");
}

QString DateFormatter::weekdayName(Date date) const {
    return formatted(date, u"dddd");
}

QString DateFormatter::shortTime(Date date) const {
    return DateStyles::of(m_calendar.locale())
        ->shortTime(clockTime(m_calendar.dateComponents(date)));
}

QString DateFormatter::longDate(Date date) const {
    return DateStyles::of(m_calendar.locale())
        ->text(DateStyles::Style::LongDate, m_calendar.day(date));
}

QString DateFormatter::fullDateAndShortTime(Date date) const {
    return DateStyles::of(m_calendar.locale())
        ->text(DateStyles::Style::FullDateAndShortTime, m_calendar.day(date),
               clockTime(m_calendar.dateComponents(date)));
}

std::optional<Date> DateFormatter::startOfDay(QDate day) const {
    if (!day.isValid())
        return std::nullopt;
    return m_calendar.date({.year = day.year(), .month = day.month(), .day = day.day()});
}

std::optional<Date> DateFormatter::fromMonthDayAndYear(QStringView text) const {
    const auto [name, rest] =
        leadingMonth(text, m_calendar.locale()).value_or(MonthAndRest{0, QStringView()});
    const qsizetype comma = rest.indexOf(", "_L1);
    if (comma < 0)
        return std::nullopt;
    const std::optional<int> day = number(rest.first(comma));
    const std::optional<int> year = number(rest.sliced(comma + 2));
    if (!day || !year)
        return std::nullopt;
    return startOfDay(QDate(*year, name, *day));
}

std::optional<Date> DateFormatter::fromMonthAndDay(QStringView text) const {
    const auto [month, rest] =
        leadingMonth(text, m_calendar.locale()).value_or(MonthAndRest{0, QStringView()});
    const std::optional<int> day = number(rest);
    if (!day)
        return std::nullopt;
    return startOfDay(QDate(yearOfYearlessTexts, month, *day));
}

std::optional<Date> DateFormatter::fromWeekdayName(QStringView text) const {
    const QLocale &locale = m_calendar.locale();
    const QDate newYear(yearOfYearlessTexts, 1, 1);
    const QDate beginOfWeek = newYear.addDays((7 - daysIntoWeek(newYear, locale)) % 7);
    for (int i = 0; i < 7; ++i) {
        const QDate day = beginOfWeek.addDays(i);
        if (locale.dayName(day.dayOfWeek(), QLocale::LongFormat) == text)
            return startOfDay(day);
    }
    return std::nullopt;
}

} // namespace tarne
