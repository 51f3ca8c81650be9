#include "DateStyles.h"

#include <unicode/dtfmtsym.h>
#include <unicode/gregocal.h>
#include <unicode/resbund.h>
#include <unicode/smpdtfmt.h>

#include <array>
#include <limits>
#include <mutex>

namespace tarne {

namespace {

using Format = std::unique_ptr<icu::DateFormat>;

constexpr double millisecondsOfDay = 86'400'000.0;

/// ICU's name of the locale, with the Gregorian calendar where the country has another one.
icu::Locale icuLocale(const QLocale &locale) {
    UErrorCode error = U_ZERO_ERROR;
    icu::Locale result = icu::Locale::forLanguageTag(locale.bcp47Name().toStdString(), error);
    const icu::ResourceBundle known(nullptr, result, error);
    // ICU takes the language of the environment for one that it does not know.
    if (U_FAILURE(error) || error == U_USING_DEFAULT_WARNING)
        result = icu::Locale::getUS();
    error = U_ZERO_ERROR;
    result.setUnicodeKeywordValue("ca", "gregory", error);
    return result;
}

icu::DateFormat *madeFor(DateStyles::Style style, const icu::Locale &locale) {
    using Make = icu::DateFormat;
    UErrorCode error = U_ZERO_ERROR;
    switch (style) {
    case DateStyles::Style::ShortTime:
        return Make::createTimeInstance(Make::kShort, locale);
    case DateStyles::Style::LongDate:
        return Make::createDateInstance(Make::kLong, locale);
    case DateStyles::Style::FullDate:
        return Make::createDateInstance(Make::kFull, locale);
    case DateStyles::Style::FullDateAndShortTime:
        return Make::createDateTimeInstance(Make::kFull, Make::kShort, locale);
    case DateStyles::Style::MonthAndYear:
        return Make::createInstanceForSkeleton("yMMMM", locale, error);
    }
    Q_UNREACHABLE();
}

/// A format that takes a moment of UTC for the reading of a wall clock. ICU has a format for each
/// style of each locale, so only a lack of memory makes none.
Format formatOf(DateStyles::Style style, const icu::Locale &locale) {
    Format format(madeFor(style, locale));
    UErrorCode error = U_ZERO_ERROR;
    auto calendar =
        std::make_unique<icu::GregorianCalendar>(*icu::TimeZone::getGMT(), locale, error);
    // Without it the days before 1582 are those of the Julian calendar.
    calendar->setGregorianChange(std::numeric_limits<UDate>::lowest(), error);
    if (!format || U_FAILURE(error))
        qBadAlloc();
    format->adoptCalendar(calendar.release());
    return format;
}

QString ourText(const icu::UnicodeString &text) {
    // CLDR has a narrow no-break space before AM and PM since 2022. A blank is what people type
    // and what every font has.
    return QStringView(text.getBuffer(), text.length()).toString().replace(u'\u202F', u' ');
}

} // namespace

/// The formats that were asked for, each made when it first was: some take milliseconds.
class DateStyles::Formats {
public:
    explicit Formats(const QLocale &locale) : m_locale(icuLocale(locale)) {}

    const icu::DateFormat &operator[](Style style) {
        const std::lock_guard lock(m_mutex);
        Format &format = m_formats[static_cast<std::size_t>(style)];
        if (!format)
            format = formatOf(style, m_locale);
        return *format;
    }

    /// ICU makes its styles of patterns and names.
    const icu::SimpleDateFormat &shortTime() {
        return static_cast<const icu::SimpleDateFormat &>((*this)[Style::ShortTime]);
    }

private:
    icu::Locale m_locale;
    std::mutex m_mutex;
    std::array<Format, 5> m_formats;
};

DateStyles::DateStyles(const QLocale &locale) : m_formats(std::make_unique<Formats>(locale)) {}

DateStyles::~DateStyles() = default;

std::shared_ptr<const DateStyles> DateStyles::of(const QLocale &locale) {
    static std::mutex mutex;
    static QLocale lastLocale;
    static std::shared_ptr<const DateStyles> lastStyles;
    const std::lock_guard lock(mutex);
    if (!lastStyles || lastLocale != locale) {
        lastStyles = std::make_shared<const DateStyles>(locale);
        lastLocale = locale;
    }
    return lastStyles;
}

QString DateStyles::text(Style style, QDate day, QTime time) const {
    const auto days = static_cast<double>(QDate(1970, 1, 1).daysTo(day));
    icu::UnicodeString result;
    (*m_formats)[style].format(days * millisecondsOfDay + time.msecsSinceStartOfDay(), result);
    return ourText(result);
}

QString DateStyles::shortTime(QTime time) const {
    return text(Style::ShortTime, QDate(2001, 1, 1), time);
}

QString DateStyles::shortTimePattern() const {
    icu::UnicodeString pattern;
    m_formats->shortTime().toPattern(pattern);
    return ourText(pattern);
}

QString DateStyles::halfOfDay(bool isAfternoon) const {
    int32_t count = 0;
    const icu::UnicodeString *halves =
        m_formats->shortTime().getDateFormatSymbols()->getAmPmStrings(count);
    return ourText(halves[isAfternoon ? 1 : 0]);
}

} // namespace tarne
