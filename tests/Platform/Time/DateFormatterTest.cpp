#include "DateFormatter.h"
#include "CldrTexts.h"

#include <QRegularExpression>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unicode/locid.h>

using namespace tarne;
using namespace Qt::StringLiterals;

namespace {

Calendar calendarOf(const QString &locale) {
    return Calendar(QTimeZone("Europe/Berlin"), QLocale(locale));
}

struct Formats {
    Calendar calendar;
    DateFormatter formatter{calendar};

    explicit Formats(const QString &locale = u"en_US"_s) : calendar(calendarOf(locale)) {}
    Date date(const DateComponents &components) const { return *calendar.date(components); }
};

} // namespace

TEST(DateFormatter, WritesItsPatternsInEnglish) {
    const Formats formats;
    const Date date = formats.date({2026, 3, 2, 15, 30, 59});
    EXPECT_EQ(formats.formatter.shortMonth(date), u"Mar"_s);
    EXPECT_EQ(formats.formatter.monthAndDay(date), u"Mar 2"_s);
    EXPECT_EQ(formats.formatter.monthDayAndYear(date), u"Mar 2, 2026"_s);
    EXPECT_EQ(formats.formatter.weekdayName(date), u"Monday"_s);
    EXPECT_EQ(formats.formatter.shortTime(date), u"3:30 PM"_s);
    EXPECT_EQ(formats.formatter.fullDateAndShortTime(date), u"Monday, March 2, 2026 at 3:30 PM"_s);
}

TEST(DateFormatter, WritesALongDateWithoutTheWeekday) {
    for (const auto &[locale, text] :
         {std::pair{u"en_US"_s, u"March 2, 2026"_s}, std::pair{u"en_GB"_s, u"2 March 2026"_s},
          std::pair{u"de_DE"_s, u"2. März 2026"_s}, std::pair{u"fr_FR"_s, u"2 mars 2026"_s},
          std::pair{u"es_ES"_s, u"2 de marzo de 2026"_s},
          std::pair{u"ja_JP"_s, u"2026年3月2日"_s}}) {
        const Formats formats(locale);
        EXPECT_EQ(formats.formatter.longDate(formats.date({2026, 3, 2})), text);
    }
}

TEST(DateFormatter, WritesInTheLanguageOfTheLocale) {
    const Formats formats(u"de_DE"_s);
    const Date date = formats.date({2026, 3, 2, 15, 30});
    EXPECT_EQ(formats.formatter.weekdayName(date), u"Montag"_s);
    EXPECT_EQ(formats.formatter.shortTime(date), u"15:30"_s);
    EXPECT_EQ(formats.formatter.fullDateAndShortTime(date), u"Montag, 2. März 2026 um 15:30"_s);
}

TEST(DateFormatter, WritesTheHalfOfTheDayWhereALanguageNamesItByTheHour) {
    const Formats formats(u"zh_TW"_s);
    EXPECT_EQ(formats.formatter.shortTime(formats.date({2026, 3, 2, 13, 0})), u"下午1:00"_s);
    EXPECT_EQ(formats.formatter.shortTime(formats.date({2026, 3, 2, 0, 5})), u"凌晨12:05"_s);
    EXPECT_TRUE(formats.formatter.fullDateAndShortTime(formats.date({2026, 3, 2, 13, 0}))
                    .endsWith(u"下午1:00"_s));
}

TEST(DateFormatter, NoLocalesShortTimeShowsALetterOfItsPattern) {
    for (const QLocale &locale :
         QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry)) {
        if (locale.language() == QLocale::C)
            continue;
        const Calendar calendar(QTimeZone::utc(), locale);
        const QString time = DateFormatter(calendar).shortTime(*calendar.date({2026, 3, 2, 13, 0}));
        EXPECT_FALSE(time.contains(QRegularExpression(u"\\b[BbKkJj]+[0-9]"_s)))
            << qPrintable(locale.name()) << qPrintable(time);
    }
}

TEST(DateFormatter, WritesInTheDigitsOfTheLocale) {
    const Formats formats(u"ar_EG"_s);
    EXPECT_TRUE(
        formats.formatter.monthDayAndYear(formats.date({2026, 3, 2})).endsWith(u"٢, ٢٠٢٦"_s));
}

TEST(DateFormatter, WritesTheDayAndTimeOfTheZone) {
    const DateFormatter berlin(calendarOf(u"en_US"_s));
    const Date lateInUtc = Date::fromUnixSeconds(1772494200.0); // 2026-03-02T23:30:00Z
    EXPECT_EQ(berlin.monthAndDay(lateInUtc), u"Mar 3"_s);
    EXPECT_EQ(berlin.shortTime(lateInUtc), u"12:30 AM"_s);
}

TEST(DateFormatter, ALanguageThatIcuDoesNotKnowHasTheWordsOfTheScreens) {
    // Not those of a language that ICU takes from the environment.
    const icu::Locale before = icu::Locale::getDefault();
    UErrorCode error = U_ZERO_ERROR;
    icu::Locale::setDefault(icu::Locale::getGermany(), error);
    const Formats formats(u"gn_PY"_s);
    EXPECT_EQ(formats.formatter.longDate(formats.date({2026, 3, 2})), u"March 2, 2026"_s);
    icu::Locale::setDefault(before, error);
}

TEST(DateFormatter, ALabelWithAYearReadsBackAsItsDay) {
    for (const char *locale : {"en_US", "de_DE", "ar_EG", "fa_IR", "ja_JP", "fr_FR", "ru_RU",
                               "he_IL", "hi_IN", "vi_VN", "zh_CN", "cs_CZ"}) {
        const Formats formats(QString::fromLatin1(locale));
        for (int month = 1; month <= 12; ++month) {
            for (const int day : {1, 2, 11, 12, 28}) {
                const Date date = formats.date({2025, month, day, 18});
                const QString label = formats.formatter.monthDayAndYear(date);
                const auto read = formats.formatter.fromMonthDayAndYear(label);
                ASSERT_TRUE(read.has_value()) << locale << ' ' << qPrintable(label);
                EXPECT_EQ(*read, formats.calendar.startOfDay(date)) << locale;
            }
        }
    }
}

TEST(DateFormatter, LabelsWithoutAYearAreOrderedByMonthAndDayBelowEveryYear) {
    const Formats formats;
    std::optional<Date> previous;
    for (int month = 1; month <= 12; ++month) {
        for (int day = 1; day <= QDate(2024, month, 1).daysInMonth(); ++day) {
            const QString label =
                formats.formatter.monthAndDay(formats.date({2024, month, day, 9}));
            const auto read = formats.formatter.fromMonthAndDay(label);
            ASSERT_TRUE(read.has_value()) << qPrintable(label);
            EXPECT_TRUE(!previous || *previous < *read) << qPrintable(label);
            EXPECT_LT(*read, *formats.formatter.fromMonthDayAndYear(u"Jan 1, 0001"_s));
            previous = read;
        }
    }
}

TEST(DateFormatter, The29thOfFebruaryHasALabelThatReadsBack) {
    const Formats formats;
    EXPECT_TRUE(formats.formatter.fromMonthAndDay(u"Feb 29"_s).has_value());
    EXPECT_TRUE(formats.formatter.fromMonthDayAndYear(u"Feb 29, 2024"_s).has_value());
    EXPECT_FALSE(formats.formatter.fromMonthDayAndYear(u"Feb 29, 2026"_s).has_value());
}

TEST(DateFormatter, WeekdayLabelsAreOrderedAsInTheWeekOfTheLocale) {
    for (const char *locale : {"en_US", "de_DE", "ar_EG"}) {
        const Formats formats(QString::fromLatin1(locale));
        const QDate sunday(2026, 3, 8);
        const int first = sunday.day() - daysIntoWeek(sunday, formats.calendar.locale());
        std::optional<Date> previous;
        for (int i = 0; i < 7; ++i) {
            const Date date = formats.date({2026, 3, first + i});
            const auto read =
                formats.formatter.fromWeekdayName(formats.formatter.weekdayName(date));
            ASSERT_TRUE(read.has_value()) << locale;
            EXPECT_TRUE(!previous || *previous < *read) << locale;
            EXPECT_LT(*read, Date::fromUnixSeconds(0));
            previous = read;
        }
    }
}

TEST(DateFormatter, ATextOfAnotherFormDoesNotRead) {
    const DateFormatter formatter(calendarOf(u"en_US"_s));
    for (const QString &text :
         {u""_s, u"Today"_s, u"Mar"_s, u"Mar x"_s, u"March 2"_s, u"mar 2"_s, u"Mar 32"_s,
          u"Mar 2,2026"_s, u"Mar -2"_s, u" Mar 2"_s, u"Mar 2 "_s}) {
        EXPECT_FALSE(formatter.fromMonthDayAndYear(text).has_value()) << qPrintable(text);
        EXPECT_FALSE(formatter.fromMonthAndDay(text).has_value()) << qPrintable(text);
        EXPECT_FALSE(formatter.fromWeekdayName(text).has_value()) << qPrintable(text);
    }
    EXPECT_FALSE(formatter.fromMonthAndDay(u"Mar 2, 2026"_s).has_value());
    EXPECT_FALSE(formatter.fromMonthDayAndYear(u"Mar 2"_s).has_value());
    EXPECT_FALSE(formatter.fromWeekdayName(u"monday"_s).has_value());
}

TEST(DateFormatter, WritesTheStylesAsTheReadersOfEachLanguageKnowThem) {
    struct Row {
        QString locale, shortTime, longDate, full;
    };
    const Row rows[] = {
        {u"en_US"_s, u"1:05 PM"_s, u"March 2, 2026"_s, u"Monday, March 2, 2026 at 1:05 PM"_s},
        {u"en_GB"_s, u"13:05"_s, u"2 March 2026"_s, u"Monday, 2 March 2026 at 13:05"_s},
        {u"en_CA"_s, u"1:05 p.m."_s, u"March 2, 2026"_s, u"Monday, March 2, 2026 at 1:05 p.m."_s},
        {u"de_DE"_s, u"13:05"_s, u"2. März 2026"_s, u"Montag, 2. März 2026 um 13:05"_s},
        {u"fr_FR"_s, u"13:05"_s, u"2 mars 2026"_s, u"lundi 2 mars 2026 à 13:05"_s},
        {u"es_ES"_s, u"13:05"_s, u"2 de marzo de 2026"_s, u"lunes, 2 de marzo de 2026, 13:05"_s},
        {u"pt_BR"_s, u"13:05"_s, u"2 de março de 2026"_s,
         u"segunda-feira, 2 de março de 2026 às 13:05"_s},
        {u"ru_RU"_s, u"13:05"_s, u"2 марта 2026 г."_s, u"понедельник, 2 марта 2026 г. в 13:05"_s},
        {u"hu_HU"_s, u"13:05"_s, u"2026. március 2."_s, u"2026. március 2., hétfő 13:05"_s},
        {u"bg_BG"_s, u"13:05 ч."_s, u"2 март 2026 г."_s,
         u"понеделник, 2 март 2026 г. в 13:05 ч."_s},
        {u"eu_ES"_s, u"13:05"_s, u"2026(e)ko martxoaren 2(a)"_s,
         u"2026(e)ko martxoaren 2(a), astelehena (13:05)"_s},
        {u"ja_JP"_s, u"13:05"_s, u"2026年3月2日"_s, u"2026年3月2日月曜日 13:05"_s},
        {u"ko_KR"_s, u"오후 1:05"_s, u"2026년 3월 2일"_s, u"2026년 3월 2일 월요일 오후 1:05"_s},
        {u"zh_TW"_s, u"下午1:05"_s, u"2026年3月2日"_s, u"2026年3月2日 星期一 下午1:05"_s},
        {u"ar_EG"_s, u"١:٠٥ م"_s, u"٢ مارس ٢٠٢٦"_s, u"الاثنين، ٢ مارس ٢٠٢٦ في ١:٠٥ م"_s},
        {u"fa_IR"_s, u"۱۳:۰۵"_s, u"۲ مارس ۲۰۲۶"_s, u"دوشنبه ۲ مارس ۲۰۲۶ ساعت ۱۳:۰۵"_s},
        {u"he_IL"_s, u"13:05"_s, u"2 במרץ 2026"_s, u"יום שני, 2 במרץ 2026 בשעה 13:05"_s},
        {u"ur_PK"_s, u"1:05 PM"_s, u"2 مارچ، 2026"_s, u"پیر، 2 مارچ، 2026 کو 1:05 PM"_s},
        {u"hi_IN"_s, u"1:05 pm"_s, u"2 मार्च 2026"_s, u"सोमवार, 2 मार्च 2026 को 1:05 pm बजे"_s},
        {u"th_TH"_s, u"13:05"_s, u"2 มีนาคม ค.ศ. 2026"_s, u"วันจันทร์ที่ 2 มีนาคม ค.ศ. 2026 เวลา 13:05"_s},
        {u"vi_VN"_s, u"13:05"_s, u"2 tháng 3, 2026"_s, u"lúc 13:05 Thứ Hai, 2 tháng 3, 2026"_s},
    };
    for (const auto &[locale, shortTime, longDate, full] : rows) {
        const Formats formats(locale);
        const Date date = formats.date({2026, 3, 2, 13, 5});
        EXPECT_EQ(formats.formatter.shortTime(date), shortTime) << qPrintable(locale);
        EXPECT_EQ(formats.formatter.longDate(date), longDate) << qPrintable(locale);
        EXPECT_EQ(formats.formatter.fullDateAndShortTime(date), full) << qPrintable(locale);
    }
}

TEST(DateFormatter, WritesDaysOfBeforeTheGregorianReformAsTheCalendarCountsThem) {
    const Formats formats;
    EXPECT_EQ(formats.formatter.longDate(formats.date({1582, 10, 4})), u"October 4, 1582"_s);
    EXPECT_EQ(formats.formatter.longDate(formats.date({1200, 2, 28})), u"February 28, 1200"_s);
}

TEST(DateFormatter, ABlankStandsBeforeTheHalfOfTheDayNotANarrowNoBreakSpace) {
    for (const char *locale : test::cldrLocales) {
        const Formats formats(QString::fromLatin1(locale));
        const Date date = formats.date({2026, 3, 2, 15, 30});
        EXPECT_FALSE(formats.formatter.shortTime(date).contains(u'\u202F')) << locale;
        EXPECT_FALSE(formats.formatter.fullDateAndShortTime(date).contains(u'\u202F')) << locale;
    }
}

TEST(DateFormatter, WritesTheStylesOfEachLocaleAsCldrHasThem) {
    const QString zone = u"Asia/Kolkata"_s;
    for (const char *locale : test::cldrLocales) {
        const Calendar calendar(QTimeZone(zone.toLatin1()), QLocale(QString::fromLatin1(locale)));
        const DateFormatter formatter(calendar);
        const test::CldrTexts cldr(locale, zone);
        for (const DateComponents &components :
             {DateComponents{2026, 3, 2, 15, 30}, DateComponents{2025, 12, 31, 0, 5},
              DateComponents{2024, 2, 29, 12, 0}, DateComponents{2026, 9, 11, 9, 9}}) {
            const Date date = *calendar.date(components);
            const double seconds = date.secondsSince1970();
            EXPECT_EQ(formatter.shortTime(date), cldr.text(UDAT_SHORT, UDAT_NONE, seconds))
                << locale;
            EXPECT_EQ(formatter.longDate(date), cldr.text(UDAT_NONE, UDAT_LONG, seconds)) << locale;
            EXPECT_EQ(formatter.fullDateAndShortTime(date),
                      cldr.text(UDAT_SHORT, UDAT_FULL, seconds))
                << locale;
        }
    }
}
