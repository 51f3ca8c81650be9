#include "MonthCalendar.h"
#include "CldrTexts.h"

#include <QAbstractItemModelTester>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class AMonthCalendar : public testing::Test {
protected:
    MonthCalendar &calendar(const QString &locale = u"en_US"_s,
                            MonthCalendar::Range range = MonthCalendar::Range::Unlimited) {
        m_calendar =
            std::make_unique<MonthCalendar>(QLocale(locale), range, [this] { return m_today; });
        m_tester = std::make_unique<QAbstractItemModelTester>(m_calendar.get());
        QObject::connect(m_calendar.get(), &MonthCalendar::picked,
                         [this](QDate day) { m_picked = day; });
        return *m_calendar;
    }
    MonthCalendar &limited() { return calendar(u"en_US"_s, MonthCalendar::Range::FromToday); }

    QVariant data(int row, MonthCalendar::Role role) const {
        return m_calendar->data(m_calendar->index(row), role);
    }
    QString text(int row) const { return data(row, MonthCalendar::Text).toString(); }
    bool isEnabled(int row) const { return data(row, MonthCalendar::IsEnabled).toBool(); }
    int selectedRow() const {
        for (int row = 0; row < MonthCalendar::rows; ++row) {
            if (data(row, MonthCalendar::IsSelected).toBool())
                return row;
        }
        return -1;
    }

    QDate m_today{2026, 3, 12}; // A Thursday.
    QDate m_picked;
    std::unique_ptr<MonthCalendar> m_calendar;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

TEST_F(AMonthCalendar, BeginsOnTodaysMonthWithTodaySelected) {
    calendar();
    EXPECT_EQ(m_calendar->monthTitle(), u"March 2026"_s);
    EXPECT_EQ(m_calendar->selectedDay(), m_today);
    EXPECT_TRUE(data(selectedRow(), MonthCalendar::IsToday).toBool());
    EXPECT_EQ(text(selectedRow()), u"12"_s);
}

TEST_F(AMonthCalendar, BeginsItsWeeksOnTheLocalesFirstWeekday) {
    EXPECT_EQ(calendar(u"en_US"_s).weekdayNames().constFirst(), u"Sun"_s);
    EXPECT_EQ(text(0), u"1"_s); // March 2026 begins on a Sunday.
    EXPECT_EQ(calendar(u"en_GB"_s).weekdayNames().constFirst(), u"Mon"_s);
    EXPECT_EQ(text(5), QString());
    EXPECT_EQ(text(6), u"1"_s);
    EXPECT_EQ(calendar(u"ar_EG"_s).weekdayNames().constFirst(),
              QLocale(u"ar_EG"_s).standaloneDayName(6, QLocale::ShortFormat));
}

TEST_F(AMonthCalendar, ShowsEveryDayOfEveryMonthOnceInEveryFirstWeekday) {
    for (const QString &locale : {u"en_US"_s, u"de_DE"_s, u"ar_EG"_s}) {
        calendar(locale);
        m_calendar->setSelectedDay(QDate(2023, 12, 31));
        for (int month = 0; month < 30; ++month) {
            m_calendar->showMonth(1);
            const QDate first = QDate(2023, 12, 1).addMonths(month + 1);
            int days = 0;
            for (int row = 0; row < MonthCalendar::rows; ++row)
                days += isEnabled(row) ? 1 : 0;
            EXPECT_EQ(days, first.daysInMonth()) << qPrintable(first.toString());
        }
    }
}

TEST_F(AMonthCalendar, WritesMonthAndYearInTheLocalesOrderAndForm) {
    for (const auto &[locale, title] :
         {std::pair{u"en_US"_s, u"March 2026"_s}, std::pair{u"de_DE"_s, u"März 2026"_s},
          std::pair{u"fr_FR"_s, u"mars 2026"_s}, std::pair{u"es_ES"_s, u"marzo de 2026"_s},
          std::pair{u"ru_RU"_s, u"март 2026 г."_s}, std::pair{u"cs_CZ"_s, u"březen 2026"_s},
          std::pair{u"lt_LT"_s, u"2026 m. kovas"_s}, std::pair{u"hu_HU"_s, u"2026. március"_s},
          std::pair{u"eu_ES"_s, u"2026(e)ko martxoa"_s}, std::pair{u"ja_JP"_s, u"2026年3月"_s},
          std::pair{u"zh_CN"_s, u"2026年3月"_s}, std::pair{u"ko_KR"_s, u"2026년 3월"_s},
          std::pair{u"ar_EG"_s, u"مارس ٢٠٢٦"_s}, std::pair{u"fa_IR"_s, u"مارس ۲۰۲۶"_s},
          std::pair{u"ur_PK"_s, u"مارچ 2026"_s}, std::pair{u"he_IL"_s, u"מרץ 2026"_s},
          std::pair{u"th_TH"_s, u"มีนาคม 2026"_s}, std::pair{u"vi_VN"_s, u"tháng 3 năm 2026"_s}})
        EXPECT_EQ(calendar(locale).monthTitle(), title) << qPrintable(locale);
}

TEST_F(AMonthCalendar, NamesEveryMonthAndItsYearInEveryLocale) {
    for (const QLocale &locale : QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript,
                                                          QLocale::AnyTerritory)) {
        const QString year = QLocale(locale.name()).toString(QDate(2027, 1, 1), u"yyyy");
        calendar(locale.name()).setSelectedDay(QDate(2027, 1, 1));
        QSet<QString> titles;
        for (int month = 1; month <= 12; ++month, m_calendar->showMonth(1)) {
            titles.insert(m_calendar->monthTitle());
            EXPECT_TRUE(m_calendar->monthTitle().contains(year))
                << qPrintable(locale.name() + u": "_s + m_calendar->monthTitle());
        }
        EXPECT_EQ(titles.size(), 12) << qPrintable(locale.name());
    }
}

TEST_F(AMonthCalendar, WritesTitlesAndDaysAsCldrHasThem) {
    for (const char *locale : test::cldrLocales) {
        const test::CldrTexts cldr(locale, u"UTC"_s);
        calendar(QString::fromLatin1(locale));
        for (int month = 1; month <= 12; ++month) {
            const QDate day(2026, month, 9);
            m_calendar->setSelectedDay(day);
            const auto seconds = static_cast<double>(day.startOfDay(Qt::UTC).toSecsSinceEpoch());
            EXPECT_EQ(m_calendar->monthTitle(), cldr.monthAndYear(seconds)) << locale;
            EXPECT_EQ(data(selectedRow(), MonthCalendar::FullName).toString(),
                      cldr.text(UDAT_NONE, UDAT_FULL, seconds))
                << locale;
        }
    }
}

TEST_F(AMonthCalendar, NamesDigitsInTheLocale) {
    const QLocale farsi(u"fa_IR"_s);
    calendar(u"fa_IR"_s);
    EXPECT_EQ(text(selectedRow()), farsi.toString(12));
    EXPECT_TRUE(m_calendar->isRightToLeft());
}

TEST_F(AMonthCalendar, NamesADayInFullForAssistiveTools) {
    calendar();
    EXPECT_EQ(data(selectedRow(), MonthCalendar::FullName), u"Thursday, March 12, 2026"_s);
}

TEST_F(AMonthCalendar, PickingTellsTheDay) {
    calendar().pick(0);
    EXPECT_EQ(m_picked, QDate(2026, 3, 1));
    EXPECT_EQ(m_calendar->selectedDay(), QDate(2026, 3, 1));
    EXPECT_EQ(selectedRow(), 0);
}

TEST_F(AMonthCalendar, TurningManyPagesStopsAtTheRangesEnds) {
    limited().showMonth(3);
    m_calendar->showMonth(-100);
    EXPECT_EQ(m_calendar->monthTitle(), u"March 2026"_s);
    m_calendar->showMonth(1'000'000);
    EXPECT_EQ(m_calendar->monthTitle(), u"December 9999"_s);
}

TEST_F(AMonthCalendar, ABlankRowCannotBePicked) {
    calendar().pick(41);
    m_calendar->pick(-1);
    m_calendar->pick(1000);
    EXPECT_EQ(m_picked, QDate());
    EXPECT_EQ(m_calendar->selectedDay(), m_today);
}

TEST_F(AMonthCalendar, TurningThePageLeavesTheSelection) {
    calendar().showMonth(1);
    EXPECT_EQ(m_calendar->monthTitle(), u"April 2026"_s);
    EXPECT_EQ(m_calendar->selectedDay(), m_today);
    EXPECT_EQ(selectedRow(), -1);
    EXPECT_EQ(text(m_calendar->tabStop()), u"1"_s);
    m_calendar->showMonth(-1);
    EXPECT_EQ(m_calendar->tabStop(), selectedRow());
}

TEST_F(AMonthCalendar, PastDaysCanBePickedWhereItIsNotLimited) {
    calendar().showMonth(-14);
    EXPECT_EQ(m_calendar->monthTitle(), u"January 2025"_s);
    m_calendar->pick(10);
    EXPECT_TRUE(m_picked.isValid());
}

TEST_F(AMonthCalendar, LimitedItReachesNoDayBeforeToday) {
    limited();
    EXPECT_FALSE(isEnabled(10)); // The 11th.
    EXPECT_TRUE(isEnabled(11));
    m_calendar->pick(10);
    EXPECT_EQ(m_picked, QDate());
    EXPECT_FALSE(m_calendar->canShowPreviousMonth());
    m_calendar->showMonth(-1);
    EXPECT_EQ(m_calendar->monthTitle(), u"March 2026"_s);
}

TEST_F(AMonthCalendar, LimitedItGoesOnFromTheDayThatIsTodayAtTheMoment) {
    limited();
    m_today = QDate(2026, 3, 13);
    EXPECT_FALSE(isEnabled(11));
    EXPECT_TRUE(isEnabled(12));
}

TEST_F(AMonthCalendar, TellsThatMidnightHasPassedWhenAskedToFollow) {
    limited();
    int changes = 0;
    QObject::connect(m_calendar.get(), &QAbstractItemModel::dataChanged, [&] { ++changes; });
    m_calendar->followToday();
    EXPECT_EQ(changes, 0);
    m_today = QDate(2026, 4, 1);
    m_calendar->followToday();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(m_calendar->monthTitle(), u"April 2026"_s);
    m_calendar->followToday();
    EXPECT_EQ(changes, 1);
}

TEST_F(AMonthCalendar, LimitedItKeepsAPastSelectionUntilAnotherDayIsPicked) {
    limited().setSelectedDay(QDate(2026, 1, 5));
    EXPECT_EQ(m_calendar->selectedDay(), QDate(2026, 1, 5));
    EXPECT_EQ(m_calendar->monthTitle(), u"March 2026"_s);
    EXPECT_EQ(selectedRow(), -1);
    EXPECT_EQ(m_picked, QDate());
    EXPECT_EQ(text(m_calendar->tabStop()), u"12"_s);
}

TEST_F(AMonthCalendar, TheArrowKeysMoveByDaysAndWeeksAcrossMonths) {
    calendar().moveByDays(1);
    EXPECT_EQ(m_picked, QDate(2026, 3, 13));
    m_calendar->moveByDays(-14);
    EXPECT_EQ(m_picked, QDate(2026, 2, 27));
    EXPECT_EQ(m_calendar->monthTitle(), u"February 2026"_s);
}

TEST_F(AMonthCalendar, PageKeysMoveByMonthsToTheNearestDayThatExists) {
    calendar().setSelectedDay(QDate(2024, 1, 31));
    m_calendar->moveByMonths(1);
    EXPECT_EQ(m_picked, QDate(2024, 2, 29));
    m_calendar->moveByMonths(-1);
    EXPECT_EQ(m_picked, QDate(2024, 1, 29));
}

TEST_F(AMonthCalendar, HomeAndEndMoveToTheEndsOfTheLocalesWeek) {
    calendar().moveToStartOfWeek();
    EXPECT_EQ(m_picked, QDate(2026, 3, 8));
    m_calendar->moveToEndOfWeek();
    EXPECT_EQ(m_picked, QDate(2026, 3, 14));
    calendar(u"de_DE"_s).moveToStartOfWeek();
    EXPECT_EQ(m_picked, QDate(2026, 3, 9));
}

TEST_F(AMonthCalendar, TheKeyboardStopsAtTodayWhereItIsLimited) {
    limited().moveByDays(-7);
    EXPECT_EQ(m_picked, m_today);
    m_calendar->moveToStartOfWeek();
    EXPECT_EQ(m_picked, m_today);
    m_calendar->moveByMonths(-12);
    EXPECT_EQ(m_picked, m_today);
}

TEST_F(AMonthCalendar, ReachesFromTheYear1ToTheYear9999) {
    calendar().setSelectedDay(QDate(9999, 12, 31));
    m_calendar->moveByDays(1);
    EXPECT_EQ(m_picked, QDate(9999, 12, 31));
    m_calendar->showMonth(1);
    EXPECT_EQ(m_calendar->monthTitle(), u"December 9999"_s);
    EXPECT_FALSE(m_calendar->canShowNextMonth());
    m_calendar->setSelectedDay(QDate(1, 1, 1));
    m_calendar->moveByMonths(-1);
    EXPECT_EQ(m_picked, QDate(1, 1, 1));
    EXPECT_FALSE(m_calendar->canShowPreviousMonth());
}

} // namespace
} // namespace tarne::test
