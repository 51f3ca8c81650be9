#include "Calendar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDateTime>
#include <QFile>
#include <QTemporaryDir>

#include <cmath>
#include <limits>
#include <random>

#include <ctime>

using namespace tarne;
using namespace Qt::StringLiterals;

namespace {

using Unit = Calendar::Unit;
using Granularity = Calendar::Granularity;

Calendar calendarOf(const char *zone, const QString &locale = u"en_US"_s) {
    return Calendar(QTimeZone(QByteArray(zone)), QLocale(locale));
}

/// A moment given as UTC, "2026-03-02T12:00:00".
Date utc(const QString &text) {
    const QDateTime moment = QDateTime::fromString(text + u'Z', Qt::ISODate);
    EXPECT_TRUE(moment.isValid()) << qPrintable(text);
    return Date::fromUnixSeconds(static_cast<double>(moment.toSecsSinceEpoch()));
}

QString inUtc(Date date) {
    const auto seconds = static_cast<qint64>(std::floor(date.secondsSince1970()));
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(Qt::ISODate).chopped(1);
}

QString onWall(const Calendar &calendar, Date date) {
    const DateComponents c = calendar.dateComponents(date);
    return QString::asprintf("%04d-%02d-%02d %02d:%02d:%02d", c.year, c.month, c.day, c.hour,
                             c.minute, c.second);
}

/// Sets the process's time zone for the length of a test.
class ZoneOfProcess {
public:
    explicit ZoneOfProcess(const char *zone) { set(zone); }
    ~ZoneOfProcess() { set(m_before.constData()); }
    void set(const char *zone) {
        qputenv("TZ", zone);
        tzset();
    }

private:
    QByteArray m_before = qgetenv("TZ");
};

} // namespace

TEST(Calendar, ComponentsAreThoseOfTheZone) {
    const Date moment = utc(u"2026-03-02T23:59:59"_s);
    EXPECT_EQ(onWall(calendarOf("UTC"), moment), u"2026-03-02 23:59:59"_s);
    EXPECT_EQ(onWall(calendarOf("Europe/Berlin"), moment), u"2026-03-03 00:59:59"_s);
    EXPECT_EQ(onWall(calendarOf("America/New_York"), moment), u"2026-03-02 18:59:59"_s);
    EXPECT_EQ(onWall(calendarOf("Asia/Kathmandu"), moment), u"2026-03-03 05:44:59"_s);
}

TEST(Calendar, AFractionOfASecondIsDroppedTowardsThePast) {
    EXPECT_EQ(onWall(calendarOf("UTC"), Date::fromUnixSeconds(-0.5)), u"1969-12-31 23:59:59"_s);
    EXPECT_EQ(onWall(calendarOf("UTC"), Date::fromUnixSeconds(0.999)), u"1970-01-01 00:00:00"_s);
}

TEST(Calendar, MomentsBeyondEveryCalendarDoNoHarm) {
    const Calendar calendar = calendarOf("Europe/Berlin");
    for (const double seconds :
         {1e300, -1e300, std::numeric_limits<double>::infinity(), std::nan(""), 1e18, -1e18}) {
        const Date date = Date::fromReferenceSeconds(seconds);
        (void)calendar.dateComponents(date);
        (void)calendar.startOfDay(date);
        (void)calendar.dateByAdding(Unit::day, 1, date);
        (void)calendar.dateByAdding(Unit::year, std::numeric_limits<int>::max(), date);
    }
    EXPECT_EQ(onWall(calendar, Date::fromReferenceSeconds(std::nan(""))), u"2001-01-01 01:00:00"_s);
}

TEST(Calendar, ComponentsGiveTheirMomentBack) {
    const Calendar calendar = calendarOf("Europe/Berlin");
    EXPECT_EQ(inUtc(*calendar.date({2026, 7, 1, 9, 30, 15})), u"2026-07-01T07:30:15"_s);
    EXPECT_EQ(inUtc(*calendar.date({2026, 1, 1, 0, 0, 0})), u"2025-12-31T23:00:00"_s);
}

TEST(Calendar, ThereIsNoMomentOfADayThatTheCalendarLacks) {
    const Calendar calendar = calendarOf("UTC");
    EXPECT_TRUE(calendar.date({2024, 2, 29}).has_value());
    EXPECT_FALSE(calendar.date({2026, 2, 29}).has_value());
    EXPECT_FALSE(calendar.date({2026, 13, 1}).has_value());
    EXPECT_FALSE(calendar.date({2026, 1, 1, 24}).has_value());
}

TEST(Calendar, ASkippedClockTimeCountsOnFromBeforeTheGap) {
    const Calendar calendar = calendarOf("Europe/Berlin");
    EXPECT_EQ(onWall(calendar, *calendar.date({2026, 3, 29, 2, 30})), u"2026-03-29 03:30:00"_s);
}

TEST(Calendar, AClockTimeThatComesTwiceIsTheFirst) {
    const Calendar calendar = calendarOf("Europe/Berlin");
    EXPECT_EQ(inUtc(*calendar.date({2026, 10, 25, 2, 30})), u"2026-10-25T00:30:00"_s);
}

TEST(Calendar, AddingDaysKeepsTheClockTimeOnDaysOf23And25Hours) {
    const Calendar calendar = calendarOf("America/New_York");
    const Date beforeSpring = *calendar.date({2026, 3, 7, 12, 0, 0});
    EXPECT_EQ(*calendar.dateByAdding(Unit::day, 1, beforeSpring) - beforeSpring, 23 * 3600.0);
    const Date beforeAutumn = *calendar.date({2026, 10, 31, 12, 0, 0});
    EXPECT_EQ(*calendar.dateByAdding(Unit::day, 1, beforeAutumn) - beforeAutumn, 25 * 3600.0);
    EXPECT_EQ(*calendar.dateByAdding(Unit::weekOfYear, -52, beforeSpring) - beforeSpring,
              -364 * 86400.0);
}

TEST(Calendar, AddingDaysIntoARepeatedHourKeepsTheOffset) {
    const Calendar calendar = calendarOf("Europe/Berlin");
    const Date before = *calendar.date({2026, 10, 24, 2, 30});
    EXPECT_EQ(inUtc(*calendar.dateByAdding(Unit::day, 1, before)), u"2026-10-25T00:30:00"_s);
    const Date after = *calendar.date({2026, 10, 26, 2, 30});
    EXPECT_EQ(inUtc(*calendar.dateByAdding(Unit::day, -1, after)), u"2026-10-25T01:30:00"_s);
}

TEST(Calendar, AddingDaysIntoASkippedHourCountsOnFromBeforeTheGap) {
    const Calendar calendar = calendarOf("Europe/Berlin");
    const Date before = *calendar.date({2026, 3, 28, 2, 30});
    EXPECT_EQ(onWall(calendar, *calendar.dateByAdding(Unit::day, 1, before)),
              u"2026-03-29 03:30:00"_s);
    const Date after = *calendar.date({2026, 3, 30, 2, 30});
    EXPECT_EQ(onWall(calendar, *calendar.dateByAdding(Unit::day, -1, after)),
              u"2026-03-29 03:30:00"_s);
}

TEST(Calendar, AnHourIsAlways3600Seconds) {
    const Calendar calendar = calendarOf("Europe/Berlin");
    const Date before = *calendar.date({2026, 3, 29, 3, 15});
    EXPECT_EQ(onWall(calendar, *calendar.dateByAdding(Unit::hour, -1, before)),
              u"2026-03-29 01:15:00"_s);
}

TEST(Calendar, AddingKeepsTheFractionOfASecond) {
    const Calendar calendar = calendarOf("Europe/Berlin");
    const Date date = utc(u"2026-03-02T12:00:00"_s) + 0.25;
    EXPECT_EQ(*calendar.dateByAdding(Unit::day, -30, date) - date, -30 * 86400.0);
    EXPECT_EQ(*calendar.dateByAdding(Unit::day, -1, Date::fromUnixSeconds(-0.25)),
              Date::fromUnixSeconds(-86400.25));
}

TEST(Calendar, AddingMonthsAndYearsStaysInsideTheMonth) {
    const Calendar calendar = calendarOf("UTC");
    const auto after = [&calendar](Unit unit, int value, const DateComponents &from) {
        return onWall(calendar, *calendar.dateByAdding(unit, value, *calendar.date(from)));
    };
    EXPECT_EQ(after(Unit::month, 1, {2026, 1, 31}), u"2026-02-28 00:00:00"_s);
    EXPECT_EQ(after(Unit::month, -1, {2026, 1, 15}), u"2025-12-15 00:00:00"_s);
    EXPECT_EQ(after(Unit::year, -1, {2024, 2, 29}), u"2023-02-28 00:00:00"_s);
    EXPECT_EQ(after(Unit::year, -4, {2024, 2, 29}), u"2020-02-29 00:00:00"_s);
}

TEST(Calendar, ADayBeginsAtMidnight) {
    const Calendar calendar = calendarOf("Asia/Tokyo");
    EXPECT_EQ(onWall(calendar, calendar.startOfDay(utc(u"2026-03-02T23:59:59"_s) + 0.5)),
              u"2026-03-03 00:00:00"_s);
    const Date midnight = *calendar.date({2026, 3, 3});
    EXPECT_EQ(calendar.startOfDay(midnight), midnight);
}

TEST(Calendar, ADayWhoseMidnightIsSkippedBeginsWithItsFirstMoment) {
    const Calendar santiago = calendarOf("America/Santiago");
    const Date afternoon = *santiago.date({2025, 9, 7, 15});
    EXPECT_EQ(onWall(santiago, santiago.startOfDay(afternoon)), u"2025-09-07 01:00:00"_s);
    const Date dayBefore = *santiago.date({2025, 9, 6, 15});
    EXPECT_EQ(onWall(santiago, santiago.startOfDay(dayBefore)), u"2025-09-06 00:00:00"_s);
    const Calendar cairo = calendarOf("Africa/Cairo");
    EXPECT_EQ(onWall(cairo, cairo.startOfDay(*cairo.date({2024, 4, 26, 12}))),
              u"2024-04-26 01:00:00"_s);
}

TEST(Calendar, ADayWhoseMidnightComesTwiceBeginsWithTheFirst) {
    const Calendar havana = calendarOf("America/Havana");
    const Date afternoon = *havana.date({2025, 11, 2, 15});
    EXPECT_EQ(inUtc(havana.startOfDay(afternoon)), u"2025-11-02T04:00:00"_s);
    EXPECT_EQ(havana.startOfDay(utc(u"2025-11-02T05:30:00"_s)), havana.startOfDay(afternoon));
    // Clocks went from 00:01 back to 23:01 of the day before.
    const Calendar stJohns = calendarOf("America/St_Johns");
    const Date noon = *stJohns.date({2008, 11, 2, 12});
    EXPECT_EQ(inUtc(stJohns.startOfDay(noon)), u"2008-11-02T02:30:00"_s);
    EXPECT_EQ(stJohns.startOfDay(stJohns.startOfDay(noon)), stJohns.startOfDay(noon));
}

TEST(Calendar, YesterdayOfADayAfterASkippedMidnightIsTheDayBefore) {
    const Calendar santiago = calendarOf("America/Santiago");
    const Date skipped = santiago.startOfDay(*santiago.date({2025, 9, 7, 15}));
    const Date next = santiago.startOfDay(*santiago.date({2025, 9, 8, 15}));
    const Date back = *santiago.dateByAdding(Unit::day, -1, next);
    EXPECT_TRUE(santiago.isDateInSameDay(back, skipped));
    EXPECT_TRUE(santiago.isDateInYesterday(skipped, next));
    const Date before = *santiago.dateByAdding(Unit::day, -1, skipped);
    EXPECT_EQ(onWall(santiago, before), u"2025-09-06 01:00:00"_s);
}

TEST(Calendar, ADayThatTheZoneLeavesOutIsPassedInTheDirectionOfTheMove) {
    const Calendar apia = calendarOf("Pacific/Apia");
    const Date before = *apia.date({2011, 12, 29, 10});
    EXPECT_EQ(onWall(apia, *apia.dateByAdding(Unit::day, 1, before)), u"2011-12-31 10:00:00"_s);
    const Date after = *apia.date({2011, 12, 31, 10});
    EXPECT_EQ(onWall(apia, *apia.dateByAdding(Unit::day, -1, after)), u"2011-12-29 10:00:00"_s);
    EXPECT_EQ(onWall(apia, *apia.dateByAdding(Unit::day, -1, apia.startOfDay(after))),
              u"2011-12-29 00:00:00"_s);
}

TEST(Calendar, NoMoveLeadsBeyondItsFarthestMoments) {
    const Calendar calendar = calendarOf("Europe/Berlin");
    const Date first = Date::fromUnixSeconds(-1e5 * 366 * 86400);
    const Date last = *calendar.date({100'000, 12, 31});
    EXPECT_FALSE(calendar.dateByAdding(Unit::day, -1, first));
    EXPECT_FALSE(calendar.dateByAdding(Unit::weekOfYear, -51, first));
    EXPECT_TRUE(calendar.dateByAdding(Unit::day, 1, first));
    EXPECT_FALSE(calendar.dateByAdding(Unit::day, 1, last));
    EXPECT_FALSE(calendar.dateByAdding(Unit::month, 1, last));
    EXPECT_TRUE(calendar.dateByAdding(Unit::day, -1, last));
}

TEST(Calendar, DaysBetweenCountsDatesNotHours) {
    const Calendar calendar = calendarOf("America/New_York");
    const Date evening = *calendar.date({2026, 3, 7, 23, 59, 59});
    const Date morning = *calendar.date({2026, 3, 8, 0, 0, 0});
    EXPECT_EQ(calendar.daysBetween(evening, morning), 1);
    EXPECT_EQ(calendar.daysBetween(morning, evening), -1);
    EXPECT_EQ(calendar.daysBetween(*calendar.date({2025, 12, 31}), *calendar.date({2026, 1, 1})),
              1);
    EXPECT_EQ(calendar.daysBetween(*calendar.date({2024, 2, 28}), *calendar.date({2024, 3, 1})), 2);
    const Calendar santiago = calendarOf("America/Santiago");
    const Date skipped = santiago.startOfDay(*santiago.date({2025, 9, 7, 15}));
    EXPECT_EQ(santiago.daysBetween(skipped, *santiago.date({2025, 9, 8})), 1);
    EXPECT_EQ(santiago.daysBetween(*santiago.date({2025, 9, 6}), skipped), 1);
}

TEST(Calendar, DaysOnBothSidesOfOneThatIsLeftOutAreADayApart) {
    const Calendar apia = calendarOf("Pacific/Apia");
    const Date before = *apia.date({2011, 12, 29, 22});
    const Date after = *apia.date({2011, 12, 31, 10});
    EXPECT_EQ(apia.daysBetween(before, after), 1);
    EXPECT_EQ(apia.daysBetween(after, before), -1);
    EXPECT_EQ(apia.daysBetween(*apia.date({2011, 12, 28}), before), 1);
    const Calendar utc = calendarOf("UTC");
    EXPECT_EQ(utc.daysBetween(*utc.date({2011, 12, 29}), *utc.date({2011, 12, 31})), 2);
}

TEST(Calendar, WeekdaysAreNumberedFromSunday) {
    const Calendar calendar = calendarOf("UTC");
    for (int day = 1; day <= 7; ++day)
        EXPECT_EQ(calendar.weekday(*calendar.date({2026, 3, day})), day);
}

TEST(Calendar, WeeksBeginOnTheFirstWeekdayOfTheLocale) {
    const QDate sunday(2026, 3, 1);
    EXPECT_EQ(daysIntoWeek(sunday, QLocale(u"en_US"_s)), 0);
    EXPECT_EQ(daysIntoWeek(sunday, QLocale(u"de_DE"_s)), 6);
    EXPECT_EQ(daysIntoWeek(sunday, QLocale(u"ar_EG"_s)), 1);
}

TEST(Calendar, TheSameWeekDependsOnTheFirstWeekday) {
    const auto sameWeek = [](const QString &locale, int day, int other) {
        const Calendar calendar = calendarOf("UTC", locale);
        return calendar.isDateEqual(*calendar.date({2026, 3, day, 23}),
                                    *calendar.date({2026, 3, other}), Granularity::weekOfYear);
    };
    // 2026-03-07 is a Saturday, the 8th a Sunday, the 9th a Monday.
    EXPECT_FALSE(sameWeek(u"en_US"_s, 7, 8));
    EXPECT_TRUE(sameWeek(u"en_US"_s, 8, 9));
    EXPECT_TRUE(sameWeek(u"de_DE"_s, 7, 8));
    EXPECT_FALSE(sameWeek(u"de_DE"_s, 8, 9));
    EXPECT_TRUE(sameWeek(u"ar_EG"_s, 7, 8));
    EXPECT_FALSE(sameWeek(u"ar_EG"_s, 6, 7));
    EXPECT_FALSE(sameWeek(u"en_US"_s, 2, 9));
}

TEST(Calendar, AWeekRunsOnAcrossTheTurnOfTheYear) {
    const Calendar calendar = calendarOf("UTC");
    const Date december = *calendar.date({2025, 12, 30});
    const Date january = *calendar.date({2026, 1, 2});
    EXPECT_TRUE(calendar.isDateEqual(december, january, Granularity::weekOfYear));
    EXPECT_FALSE(calendar.isDateEqual(december, january, Granularity::year));
    EXPECT_FALSE(calendar.isDateEqual(december, january, Granularity::day));
}

TEST(Calendar, TheSameWeekOfAnotherYearIsAnotherWeek) {
    const Calendar calendar = calendarOf("UTC");
    EXPECT_FALSE(calendar.isDateEqual(*calendar.date({2025, 3, 3}), *calendar.date({2026, 3, 2}),
                                      Granularity::weekOfYear));
}

TEST(Calendar, AZoneChangedUnderTheProgramCountsAtTheNextUse) {
    const Date moment = utc(u"2026-07-01T12:00:00"_s);
    ZoneOfProcess zone("Europe/Berlin");
    EXPECT_EQ(onWall(Calendar::current(), moment), u"2026-07-01 14:00:00"_s);
    zone.set("Asia/Tokyo");
    EXPECT_EQ(onWall(Calendar::current(), moment), u"2026-07-01 21:00:00"_s);
    zone.set(":America/New_York");
    EXPECT_EQ(onWall(Calendar::current(), moment), u"2026-07-01 08:00:00"_s);
    zone.set("UTC");
    EXPECT_EQ(onWall(Calendar::current(), moment), u"2026-07-01 12:00:00"_s);
}

TEST(Calendar, AnUnknownZoneCountsAsUtc) {
    for (const char *name : {"Nowhere/Atall", "/nowhere/at/all", "/etc"}) {
        const ZoneOfProcess zone(name);
        EXPECT_EQ(onWall(Calendar::current(), utc(u"2026-07-01T12:00:00"_s)),
                  u"2026-07-01 12:00:00"_s)
            << name;
    }
}

TEST(Calendar, AZoneNamedByItsFileIsThatZone) {
    const Date summer = utc(u"2026-07-01T12:00:00"_s);
    for (const char *name :
         {"/usr/share/zoneinfo/Europe/Berlin", ":/usr/share/zoneinfo/Europe/Berlin"}) {
        const ZoneOfProcess zone(name);
        EXPECT_EQ(onWall(Calendar::current(), summer), u"2026-07-01 14:00:00"_s) << name;
        EXPECT_EQ(onWall(Calendar::current(), utc(u"2026-01-01T12:00:00"_s)),
                  u"2026-01-01 13:00:00"_s)
            << name;
    }
}

TEST(Calendar, AZoneWhoseFileIsALinkFollowsTheLink) {
    const QTemporaryDir folder;
    const QString link = folder.filePath(u"localtime"_s);
    const ZoneOfProcess zone(qPrintable(link));
    for (const auto &[file, wall] :
         {std::pair{u"Europe/Berlin"_s, u"14"_s}, std::pair{u"Asia/Tokyo"_s, u"21"_s}}) {
        QFile::remove(link);
        ASSERT_TRUE(QFile::link(u"/usr/share/zoneinfo/"_s + file, link));
        EXPECT_EQ(onWall(Calendar::current(), utc(u"2026-07-01T12:00:00"_s)),
                  u"2026-07-01 %1:00:00"_s.arg(wall));
    }
}

TEST(Calendar, OffsetsInTheNameOfAZoneCountToTheWestAsInTheCLibrary) {
    const Date noon = utc(u"2026-07-01T12:00:00"_s);
    for (const char *name : {"UTC-3", "UTC+3", "UTC3", "UTC-3:30", "UTC-03:00", "GMT-3", "GMT+5",
                             "<UTC>-3", "EST5", "<+03>-3", "UTC0", "UTC-1UTS,M3.5.0,M10.5.0/3",
                             "CET-1CEST,M3.5.0,M10.5.0/3", "Etc/GMT+5", "EST5EDT", ""}) {
        const ZoneOfProcess zone(name);
        const auto seconds = static_cast<std::time_t>(noon.secondsSince1970());
        std::tm local{};
        localtime_r(&seconds, &local);
        const DateComponents shown = Calendar::current().dateComponents(noon);
        EXPECT_EQ(shown.day, local.tm_mday) << name;
        EXPECT_EQ(shown.hour, local.tm_hour) << name;
        EXPECT_EQ(shown.minute, local.tm_min) << name;
    }
}

TEST(Calendar, ALocaleThatSaysNothingIsAmericanEnglish) {
    EXPECT_EQ(Calendar::current().locale(), QLocale(QLocale::English, QLocale::UnitedStates));
}

TEST(Calendar, TheLocaleOfTimesIsReadAfresh) {
    const QByteArray before = qgetenv("LC_ALL");
    qputenv("LC_ALL", "");
    qputenv("LANG", "en_US.UTF-8");
    qputenv("LC_TIME", "de_DE.UTF-8");
    EXPECT_EQ(Calendar::current().locale().language(), QLocale::German);
    qputenv("LC_ALL", "ar_EG.UTF-8");
    EXPECT_EQ(Calendar::current().locale().firstDayOfWeek(), Qt::Saturday);
    qputenv("LC_ALL", before);
    qunsetenv("LANG");
    qunsetenv("LC_TIME");
}

TEST(Calendar, ComponentsAgreeWithQtInEveryZoneAndYear) {
    std::mt19937_64 random(7);
    for (const char *zone :
         {"UTC", "Europe/Berlin", "America/Santiago", "Africa/Cairo", "Asia/Tehran", "Pacific/Apia",
          "Africa/Casablanca", "Australia/Lord_Howe", "Asia/Gaza", "America/Havana",
          "Antarctica/Troll", "Europe/Dublin"}) {
        const QTimeZone timeZone{QByteArray(zone)};
        const Calendar calendar(timeZone, QLocale::c());
        std::uniform_int_distribution<qint64> seconds(-2208988800, 4102444800);
        for (int round = 0; round < 2000; ++round) {
            const qint64 moment = seconds(random);
            const Date date = Date::fromUnixSeconds(static_cast<double>(moment));
            const QDateTime expected = QDateTime::fromSecsSinceEpoch(moment, timeZone);
            ASSERT_EQ(onWall(calendar, date), expected.toString(u"yyyy-MM-dd HH:mm:ss"_s)) << zone;
            const Date start = calendar.startOfDay(date);
            ASSERT_LE(start, date);
            ASSERT_TRUE(calendar.isDateInSameDay(start, date)) << zone << moment;
            ASSERT_EQ(calendar.startOfDay(start), start) << zone << moment;
            ASSERT_FALSE(calendar.isDateInSameDay(start - 1.0, date)) << zone << moment;
        }
    }
}
