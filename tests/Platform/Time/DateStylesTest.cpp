#include "DateStyles.h"
#include "CldrTexts.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using Style = DateStyles::Style;

TEST(DateStyles, AMonthAndAFullDateReadInTheOrderOfTheLanguage) {
    const auto texts = [](const QString &locale) {
        const DateStyles styles{QLocale(locale)};
        const QDate day(2026, 3, 2);
        return QStringList{styles.text(Style::MonthAndYear, day),
                           styles.text(Style::FullDate, day)};
    };
    EXPECT_EQ(texts(u"en_US"_s), (QStringList{u"March 2026"_s, u"Monday, March 2, 2026"_s}));
    EXPECT_EQ(texts(u"eu_ES"_s),
              (QStringList{u"2026(e)ko martxoa"_s, u"2026(e)ko martxoaren 2(a), astelehena"_s}));
    EXPECT_EQ(texts(u"ur_PK"_s), (QStringList{u"مارچ 2026"_s, u"پیر، 2 مارچ، 2026"_s}));
}

TEST(DateStyles, TheCalendarIsTheGregorianOneAlsoWhereTheCountryHasAnother) {
    for (const QString &locale : {u"fa_IR"_s, u"th_TH"_s, u"ar_SA"_s, u"am_ET"_s, u"ps_AF"_s}) {
        const QString year = QLocale(locale).toString(QDate(2026, 3, 2), u"yyyy");
        EXPECT_TRUE(DateStyles(QLocale(locale)).text(Style::LongDate, {2026, 3, 2}).contains(year))
            << qPrintable(locale);
    }
}

TEST(DateStyles, TheHalvesOfTheDayStandInTheirPlaceInTheShortTime) {
    for (const char *locale : test::cldrLocales) {
        const DateStyles styles{QLocale(QString::fromLatin1(locale))};
        if (!styles.shortTimePattern().contains(u'a'))
            continue;
        EXPECT_TRUE(styles.shortTime(QTime(1, 0)).contains(styles.halfOfDay(false))) << locale;
        EXPECT_TRUE(styles.shortTime(QTime(13, 0)).contains(styles.halfOfDay(true))) << locale;
    }
}

TEST(DateStyles, TheSameLocaleHasTheSameStyles) {
    const auto english = DateStyles::of(QLocale(u"en_US"_s));
    EXPECT_EQ(DateStyles::of(QLocale(u"en_US"_s)), english);
    EXPECT_EQ(DateStyles::of(QLocale(u"de_DE"_s))->shortTime(QTime(15, 30)), u"15:30"_s);
    EXPECT_EQ(DateStyles::of(QLocale(u"en_US"_s))->shortTime(QTime(15, 30)), u"3:30 PM"_s);
    EXPECT_EQ(english->shortTime(QTime(15, 30)), u"3:30 PM"_s);
}

TEST(DateStyles, ThreadsThatWriteAtTheSameTimeWriteTheirOwnTexts) {
    const DateStyles styles{QLocale(u"en_US"_s)};
    std::vector<std::thread> threads;
    std::vector<int> wrong(4, 0);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&styles, &wrong, t] {
            const QString expected = u"June %1, 2026"_s.arg(t + 1);
            for (int i = 0; i < 2000; ++i) {
                if (styles.text(Style::LongDate, QDate(2026, 6, t + 1)) != expected)
                    ++wrong[static_cast<std::size_t>(t)];
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(wrong, std::vector<int>(4, 0));
}

} // namespace
} // namespace tarne::test
