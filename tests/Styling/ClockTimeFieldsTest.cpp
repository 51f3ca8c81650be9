#include "ClockTimeFields.h"
#include "CldrTexts.h"

#include <QAbstractItemModelTester>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class AClockTime : public testing::Test {
protected:
    ClockTimeFields &fields(const QString &locale, QTime time = QTime(14, 5)) {
        m_fields = std::make_unique<ClockTimeFields>(QLocale(locale));
        m_tester = std::make_unique<QAbstractItemModelTester>(m_fields.get());
        m_fields->setTime(time);
        m_picks = 0;
        QObject::connect(m_fields.get(), &ClockTimeFields::picked, [this] { ++m_picks; });
        return *m_fields;
    }
    QVariant data(int row, ClockTimeFields::Role role) const {
        return m_fields->data(m_fields->index(row), role);
    }
    /// The fields as they stand in line.
    QString line() const {
        QString line;
        for (int row = 0; row < m_fields->rowCount(); ++row)
            line += data(row, ClockTimeFields::Separator).toString() +
                    data(row, ClockTimeFields::Text).toString();
        return line;
    }

    std::unique_ptr<ClockTimeFields> m_fields;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
    int m_picks = 0;
};

TEST_F(AClockTime, StandsInLineAsTheLocaleWritesIt) {
    for (const char *name : test::cldrLocales) {
        const QLocale locale(QString::fromLatin1(name));
        // The next two tests are about these.
        if (locale.name() == "zh_TW"_L1 || locale.textDirection() == Qt::RightToLeft)
            continue;
        for (const QTime time : {QTime(0, 0), QTime(9, 5), QTime(12, 30), QTime(23, 59)}) {
            fields(locale.name(), time);
            EXPECT_TRUE(m_fields->timeText().startsWith(line()))
                << name << " " << qPrintable(line());
            EXPECT_EQ(m_fields->timeText(),
                      test::CldrTexts(name, u"UTC"_s)
                          .text(UDAT_SHORT, UDAT_NONE, time.msecsSinceStartOfDay() / 1000.0))
                << name;
        }
    }
    for (const QString &locale : {u"he_IL"_s, u"fa_IR"_s}) {
        fields(locale, QTime(14, 5));
        EXPECT_EQ(line(), m_fields->timeText());
    }
}

TEST_F(AClockTime, OfALanguageThatNamesTheTimesOfDayHasItsTwoHalves) {
    fields(u"zh_TW"_s, QTime(13, 0));
    EXPECT_EQ(line(), u"下午1:00"_s);
    EXPECT_EQ(m_fields->timeText(), u"下午1:00"_s);
    EXPECT_EQ(data(0, ClockTimeFields::Name), u"Half of the day"_s);
    m_fields->step(0, 1);
    EXPECT_EQ(m_fields->time(), QTime(1, 0));
    EXPECT_EQ(line(), u"上午1:00"_s);
}

TEST_F(AClockTime, HasItsHalfOfTheDayAtTheLeftWhereTextRunsFromRightToLeft) {
    fields(u"ar_EG"_s, QTime(15, 30));
    ASSERT_EQ(m_fields->rowCount(), 3);
    EXPECT_EQ(data(0, ClockTimeFields::Name), u"Half of the day"_s);
    EXPECT_EQ(data(0, ClockTimeFields::Separator), QString());
    EXPECT_EQ(data(1, ClockTimeFields::Value), 3);
    EXPECT_FALSE(data(1, ClockTimeFields::Separator).toString().isEmpty());
    EXPECT_EQ(data(2, ClockTimeFields::Value), 30);
    EXPECT_EQ(data(2, ClockTimeFields::Separator), u":"_s);
    m_fields->step(0, 1);
    EXPECT_EQ(m_fields->time(), QTime(3, 30));
}

TEST_F(AClockTime, OfTwelveHoursHasAHalfOfTheDay) {
    fields(u"en_US"_s);
    ASSERT_EQ(m_fields->rowCount(), 3);
    EXPECT_EQ(data(0, ClockTimeFields::Value), 2);
    EXPECT_EQ(data(2, ClockTimeFields::Text), u"PM"_s);
    EXPECT_EQ(data(0, ClockTimeFields::Name), u"Hour"_s);
    EXPECT_EQ(data(1, ClockTimeFields::Name), u"Minute"_s);
    EXPECT_EQ(data(2, ClockTimeFields::Name), u"Half of the day"_s);
}

TEST_F(AClockTime, OfTwentyFourHoursHasNone) {
    fields(u"de_DE"_s);
    EXPECT_EQ(m_fields->rowCount(), 2);
    EXPECT_EQ(line(), u"14:05"_s);
}

TEST_F(AClockTime, MidnightAndNoonAreTwelveOnAClockOfTwelveHours) {
    fields(u"en_US"_s, QTime(0, 0));
    EXPECT_EQ(data(0, ClockTimeFields::Value), 12);
    EXPECT_EQ(data(2, ClockTimeFields::Text), u"AM"_s);
    m_fields->setTime(QTime(12, 0));
    EXPECT_EQ(data(0, ClockTimeFields::Value), 12);
    EXPECT_EQ(data(2, ClockTimeFields::Text), u"PM"_s);
}

TEST_F(AClockTime, StepsGoRoundWithinTheirField) {
    fields(u"de_DE"_s, QTime(23, 59)).step(1, 1);
    EXPECT_EQ(m_fields->time(), QTime(23, 0));
    m_fields->step(0, 1);
    EXPECT_EQ(m_fields->time(), QTime(0, 0));
    m_fields->step(0, -1);
    EXPECT_EQ(m_fields->time(), QTime(23, 0));
    m_fields->step(1, -10);
    EXPECT_EQ(m_fields->time(), QTime(23, 50));
    EXPECT_EQ(m_picks, 4);
}

TEST_F(AClockTime, StepsOfTwelveHoursStayInTheirHalfOfTheDay) {
    fields(u"en_US"_s, QTime(12, 30)).step(0, 1);
    EXPECT_EQ(m_fields->time(), QTime(13, 30));
    m_fields->step(0, -2);
    EXPECT_EQ(m_fields->time(), QTime(23, 30));
}

TEST_F(AClockTime, TheHalfOfTheDayMovesByTwelveHours) {
    fields(u"en_US"_s, QTime(9, 30)).step(2, 1);
    EXPECT_EQ(m_fields->time(), QTime(21, 30));
    m_fields->step(2, 1);
    EXPECT_EQ(m_fields->time(), QTime(9, 30));
    EXPECT_TRUE(m_fields->type(2, u"p"_s));
    EXPECT_EQ(m_fields->time(), QTime(21, 30));
    EXPECT_FALSE(m_fields->type(2, u"x"_s));
}

TEST_F(AClockTime, HomeAndEndGoToTheFieldsEnds) {
    fields(u"de_DE"_s).toMaximum(0);
    m_fields->toMaximum(1);
    EXPECT_EQ(m_fields->time(), QTime(23, 59));
    m_fields->toMinimum(0);
    m_fields->toMinimum(1);
    EXPECT_EQ(m_fields->time(), QTime(0, 0));
}

TEST_F(AClockTime, HomeAndEndEndTheNumberThatIsTyped) {
    fields(u"de_DE"_s, QTime(0, 0));
    m_fields->type(0, u"1"_s);
    m_fields->toMinimum(0);
    m_fields->type(0, u"2"_s);
    EXPECT_EQ(m_fields->time(), QTime(2, 0));
    m_fields->toMaximum(0);
    m_fields->type(0, u"1"_s);
    EXPECT_EQ(m_fields->time(), QTime(1, 0));
}

TEST_F(AClockTime, TypedDigitsJoinForAsLongAsTheyFit) {
    fields(u"de_DE"_s, QTime(0, 0));
    EXPECT_FALSE(m_fields->type(0, u"1"_s));
    EXPECT_EQ(m_fields->time(), QTime(1, 0));
    EXPECT_TRUE(m_fields->type(0, u"7"_s));
    EXPECT_EQ(m_fields->time(), QTime(17, 0));
    EXPECT_TRUE(m_fields->type(0, u"9"_s)); // No hour begins with it but itself.
    EXPECT_EQ(m_fields->time(), QTime(9, 0));
    EXPECT_FALSE(m_fields->type(1, u"4"_s));
    EXPECT_TRUE(m_fields->type(1, u"5"_s));
    EXPECT_EQ(m_fields->time(), QTime(9, 45));
}

TEST_F(AClockTime, ANumberEndsWithItsField) {
    fields(u"de_DE"_s, QTime(0, 0));
    EXPECT_FALSE(m_fields->type(0, u"1"_s));
    m_fields->endTyping();
    EXPECT_FALSE(m_fields->type(0, u"2"_s));
    EXPECT_EQ(m_fields->time(), QTime(2, 0));
}

TEST_F(AClockTime, TypingTwelveOnAClockOfTwelveHoursGoesByWayOfOne) {
    fields(u"en_US"_s, QTime(9, 0));
    EXPECT_FALSE(m_fields->type(0, u"1"_s));
    EXPECT_TRUE(m_fields->type(0, u"2"_s));
    EXPECT_EQ(m_fields->time(), QTime(0, 0));
}

TEST_F(AClockTime, TakesDigitsOfAnyScript) {
    fields(u"fa_IR"_s, QTime(0, 0));
    m_fields->type(0, u"۱"_s);
    m_fields->type(0, u"۷"_s);
    EXPECT_EQ(m_fields->time(), QTime(17, 0));
}

TEST_F(AClockTime, IgnoresWhatIsNoDigitAndRowsThatAreNotThere) {
    fields(u"de_DE"_s, QTime(1, 2));
    EXPECT_FALSE(m_fields->type(0, u"x"_s));
    EXPECT_FALSE(m_fields->type(0, u""_s));
    EXPECT_FALSE(m_fields->type(7, u"1"_s));
    m_fields->step(-1, 1);
    m_fields->toMaximum(9);
    EXPECT_EQ(m_fields->time(), QTime(1, 2));
    EXPECT_EQ(m_picks, 0);
}

TEST_F(AClockTime, SettingItFromOutsideIsNoPick) {
    fields(u"de_DE"_s).setTime(QTime(8, 30, 59, 999));
    EXPECT_EQ(m_fields->time(), QTime(8, 30));
    EXPECT_EQ(m_picks, 0);
}

} // namespace
} // namespace tarne::test
