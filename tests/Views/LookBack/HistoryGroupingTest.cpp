#include "HistoryGrouping.h"

#include "ToldHistory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tarne;
using namespace Qt::StringLiterals;

namespace {

/// Looks on 2026-03-04, a Wednesday, at 15:00.
class Look {
public:
    explicit Look(const QString &locale = u"en_US"_s)
        : calendar(QTimeZone("Europe/Berlin"), QLocale(locale)),
          grouping(calendar, *calendar.date({2026, 3, 4, 15})) {}

    Date at(const DateComponents &components) const { return *calendar.date(components); }
    QString label(const DateComponents &components) const {
        return grouping.formatDateForGrouping(at(components));
    }
    /// The labels in the order of their groups.
    QStringList labels(const std::vector<DateComponents> &dates) const {
        std::vector<SessionHistoryEntry> entries;
        for (const DateComponents &date : dates)
            entries.push_back({.sessionDate = at(date), .goals = {}, .duration = 0});
        QStringList result;
        for (const HistoryGroup &group : grouping.groupedEntries(entries))
            result += group.key;
        return result;
    }

    Calendar calendar;
    HistoryGrouping grouping;
};

} // namespace

TEST(HistoryGrouping, TodayRunsFromMidnightToMidnight) {
    const Look look;
    EXPECT_EQ(look.label({2026, 3, 4, 0, 0, 0}), u"Today"_s);
    EXPECT_EQ(look.label({2026, 3, 4, 23, 59, 59}), u"Today"_s);
    EXPECT_EQ(look.label({2026, 3, 3, 23, 59, 59}), u"Yesterday"_s);
    EXPECT_EQ(look.label({2026, 3, 3, 0, 0, 0}), u"Yesterday"_s);
}

TEST(HistoryGrouping, OtherDaysOfThisWeekHaveTheirWeekday) {
    const Look look;
    EXPECT_EQ(look.label({2026, 3, 2, 12}), u"Monday"_s);
    EXPECT_EQ(look.label({2026, 3, 1, 12}), u"Sunday"_s);
    EXPECT_EQ(look.label({2026, 2, 28, 12}), u"Feb 28"_s);
}

TEST(HistoryGrouping, TheWeekIsThatOfTheLocale) {
    EXPECT_EQ(Look(u"de_DE"_s).label({2026, 3, 1, 12}), u"März 1"_s);
    EXPECT_EQ(Look(u"de_DE"_s).label({2026, 3, 2, 12}), u"Montag"_s);
    EXPECT_EQ(Look(u"ja_JP"_s).label({2026, 3, 1, 12}), u"日曜日"_s);
}

TEST(HistoryGrouping, ADayInTheFutureOfThisWeekHasItsWeekday) {
    const Look look;
    EXPECT_EQ(look.label({2026, 3, 5, 12}), u"Thursday"_s);
    EXPECT_EQ(look.label({2026, 3, 8, 12}), u"Mar 8"_s);
    EXPECT_EQ(look.label({2027, 3, 8, 12}), u"Mar 8, 2027"_s);
}

TEST(HistoryGrouping, OtherDaysOfThisYearHaveMonthAndDayAndOlderOnesTheYearToo) {
    const Look look;
    EXPECT_EQ(look.label({2026, 1, 1}), u"Jan 1"_s);
    EXPECT_EQ(look.label({2025, 12, 31, 23, 59, 59}), u"Dec 31, 2025"_s);
    EXPECT_EQ(look.label({2024, 2, 29}), u"Feb 29, 2024"_s);
}

TEST(HistoryGrouping, AWeekThatCrossesTheTurnOfTheYearStillHasWeekdays) {
    const Calendar calendar(QTimeZone::utc(), QLocale(u"en_US"_s));
    const HistoryGrouping grouping(calendar, *calendar.date({2026, 1, 2, 12}));
    EXPECT_EQ(grouping.formatDateForGrouping(*calendar.date({2025, 12, 30, 12})), u"Tuesday"_s);
}

TEST(HistoryGrouping, YesterdayIsFoundAcrossASkippedMidnight) {
    const Calendar calendar(QTimeZone("America/Santiago"), QLocale(u"en_US"_s));
    const HistoryGrouping grouping(calendar, *calendar.date({2025, 9, 8, 12}));
    EXPECT_EQ(grouping.formatDateForGrouping(*calendar.date({2025, 9, 7, 1})), u"Yesterday"_s);
    EXPECT_EQ(grouping.formatDateForGrouping(*calendar.date({2025, 9, 6, 23, 59, 59})), u"Sep 6"_s);
}

TEST(HistoryGrouping, LabelsAreOrderedAsRequiredAndNotByTime) {
    EXPECT_EQ(Look().labels({{2026, 3, 4},
                             {2026, 3, 3},
                             {2026, 3, 2},
                             {2026, 3, 1},
                             {2026, 2, 20},
                             {2026, 1, 20},
                             {2025, 12, 31},
                             {2025, 3, 5},
                             {2020, 2, 29}}),
              (QStringList{u"Today"_s, u"Yesterday"_s, u"Dec 31, 2025"_s, u"Mar 5, 2025"_s,
                           u"Feb 29, 2020"_s, u"Feb 20"_s, u"Jan 20"_s, u"Monday"_s, u"Sunday"_s}));
}

TEST(HistoryGrouping, LabelsWithoutAYearLieBelowEveryLabelWithOne) {
    const Look look;
    const Date lowest = look.grouping.parseGroupingDate(u"Jan 1, 0001"_s);
    for (const QString &label : {u"Dec 31"_s, u"Feb 29"_s, u"Saturday"_s, u"Sunday"_s})
        EXPECT_LT(look.grouping.parseGroupingDate(label), lowest) << qPrintable(label);
    EXPECT_LT(look.grouping.parseGroupingDate(u"Feb 28"_s),
              look.grouping.parseGroupingDate(u"Feb 29"_s));
    EXPECT_LT(look.grouping.parseGroupingDate(u"Feb 29"_s),
              look.grouping.parseGroupingDate(u"Mar 1"_s));
}

TEST(HistoryGrouping, TodayAndAnUnknownTextParseToNow) {
    const Look look;
    const Date now = look.at({2026, 3, 4, 15});
    EXPECT_EQ(look.grouping.parseGroupingDate(u"Today"_s), now);
    EXPECT_EQ(look.grouping.parseGroupingDate(u"Tomorrow"_s), now);
    EXPECT_EQ(look.grouping.parseGroupingDate(QString()), now);
    EXPECT_EQ(look.grouping.parseGroupingDate(u"Yesterday"_s), look.at({2026, 3, 3, 15}));
    EXPECT_EQ(look.grouping.parseGroupingDate(u"Mar 2, 2025"_s), look.at({2025, 3, 2}));
}

TEST(HistoryGrouping, YesterdayParsesToNowWhereTheCalendarBegins) {
    const Calendar calendar(QTimeZone::utc(), QLocale(u"en_US"_s));
    const Date now = test::calendarBegins;
    EXPECT_EQ(HistoryGrouping(calendar, now).parseGroupingDate(u"Yesterday"_s), now);
}

TEST(HistoryGrouping, EntriesOfOneDayShareAGroupAndKeepTheirOrder) {
    const Look look;
    const std::vector<SessionHistoryEntry> entries{
        {.sessionDate = look.at({2025, 5, 1, 9}), .goals = {}, .duration = 0, .reflection = u"a"_s},
        {.sessionDate = look.at({2026, 3, 4, 9}), .goals = {}, .duration = 0, .reflection = u"b"_s},
        {.sessionDate = look.at({2025, 5, 1, 21}),
         .goals = {},
         .duration = 0,
         .reflection = u"c"_s}};
    auto groups = look.grouping.groupedEntries(entries);
    ASSERT_EQ(groups.size(), 2U);
    EXPECT_EQ(groups[0].key, u"Today"_s);
    ASSERT_EQ(groups[1].value.size(), 2U);
    EXPECT_EQ(groups[1].value[0].reflection, u"a"_s);
    HistoryGrouping::sortForDisplay(groups[1].value);
    EXPECT_EQ(groups[1].value[0].reflection, u"c"_s);
}

TEST(HistoryGrouping, TheSameDayOfTwoYearsHasTwoLabels) {
    EXPECT_EQ(Look().labels({{2026, 2, 10}, {2025, 2, 10}}).size(), 2);
}

TEST(HistoryGrouping, AnEmptyHistoryHasNoGroups) {
    EXPECT_TRUE(Look().grouping.groupedEntries({}).empty());
}

TEST(HistoryGrouping, DatesOfTheYears1And9999HaveLabels) {
    const Look look;
    EXPECT_EQ(look.label({1, 1, 1}), u"Jan 1, 0001"_s);
    EXPECT_EQ(look.label({9999, 12, 31, 23}), u"Dec 31, 9999"_s);
    EXPECT_EQ(look.grouping.parseGroupingDate(u"Dec 31, 9999"_s), look.at({9999, 12, 31}));
}

TEST(HistoryGrouping, BothPassesOfTheHourThatOccursTwiceShareALabel) {
    const Look look;
    const Date first = look.at({2025, 10, 26, 2, 30});
    EXPECT_EQ(look.grouping.formatDateForGrouping(first), u"Oct 26, 2025"_s);
    EXPECT_EQ(look.grouping.formatDateForGrouping(first + 3600.0), u"Oct 26, 2025"_s);
}

TEST(HistoryGrouping, LabelsStandInTheLanguageAndDigitsOfTheLocale) {
    const auto labels = [](const QString &locale) {
        const Look look(locale);
        return QStringList{look.label({2025, 12, 31}), look.label({2026, 1, 20}),
                           look.label({2026, 3, 5})};
    };
    EXPECT_EQ(labels(u"en_US"_s), (QStringList{u"Dec 31, 2025"_s, u"Jan 20"_s, u"Thursday"_s}));
    EXPECT_EQ(labels(u"de_DE"_s), (QStringList{u"Dez. 31, 2025"_s, u"Jan. 20"_s, u"Donnerstag"_s}));
    EXPECT_EQ(labels(u"ja_JP"_s), (QStringList{u"12月 31, 2025"_s, u"1月 20"_s, u"木曜日"_s}));
    EXPECT_EQ(labels(u"ar_EG"_s), (QStringList{u"ديسمبر ٣١, ٢٠٢٥"_s, u"يناير ٢٠"_s, u"الخميس"_s}));
    EXPECT_EQ(labels(u"fa_IR"_s),
              (QStringList{u"دسامبر ۳۱, ۲۰۲۵"_s, u"ژانویه ۲۰"_s, u"پنجشنبه"_s}));
}

TEST(HistoryGrouping, TheRequiredOrderHoldsInEveryLocale) {
    for (const QString &locale : {u"en_US"_s, u"de_DE"_s, u"ja_JP"_s, u"ar_EG"_s, u"fa_IR"_s}) {
        const Look look(locale);
        const QStringList order =
            look.labels({{2026, 1, 20}, {2026, 3, 5}, {2025, 12, 31}, {2026, 3, 3}, {2026, 3, 4}});
        EXPECT_EQ(order, (QStringList{u"Today"_s, u"Yesterday"_s, look.label({2025, 12, 31}),
                                      look.label({2026, 1, 20}), look.label({2026, 3, 5})}))
            << qPrintable(locale);
    }
}

TEST(HistoryGrouping, LabelsAreReadBackInEveryLocaleThatThereIs) {
    const QList<QLocale> locales =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory);
    ASSERT_GT(locales.size(), 500);
    for (const QLocale &locale : locales) {
        const Look look(locale.bcp47Name());
        QStringList yearless;
        for (int month = 1; month <= 12; ++month) {
            const Date dated = look.at({2025, month, 28});
            EXPECT_EQ(look.grouping.parseGroupingDate(look.grouping.formatDateForGrouping(dated)),
                      dated)
                << qPrintable(locale.bcp47Name());
            yearless += look.label({2026, month, 20});
        }
        const Date lowest = look.at({1, 1, 1});
        Date last = look.at({-1000, 1, 1});
        for (const QString &label : yearless) {
            const Date date = look.grouping.parseGroupingDate(label);
            EXPECT_GT(date, last) << qPrintable(locale.bcp47Name() + u' ' + label);
            EXPECT_LT(date, lowest) << qPrintable(locale.bcp47Name() + u' ' + label);
            last = date;
        }
        EXPECT_LT(look.grouping.parseGroupingDate(look.label({2026, 3, 5, 12})), lowest)
            << qPrintable(locale.bcp47Name());
    }
}
