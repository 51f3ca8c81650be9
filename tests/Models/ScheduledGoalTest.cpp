#include "ScheduledGoal.h"

#include <gmock/gmock.h>

#include <limits>

using testing::Optional;
using testing::SizeIs;

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

Calendar calendarIn(const char *zone) {
    return Calendar(QTimeZone(zone), QLocale::c());
}

Date moment(const Calendar &calendar, const DateComponents &components) {
    return calendar.date(components).value();
}

class AScheduledGoal : public testing::Test {
protected:
    Date at(int day, int hour, int minute = 0, int second = 0) const {
        return moment(m_calendar, {2026, 3, day, hour, minute, second});
    }
    static ScheduledGoal goal(Date date, Date time) { return {date, time, u"Write"_s}; }

    Calendar m_calendar = calendarIn("Europe/Berlin");
};

TEST_F(AScheduledGoal, IsMadeWithANewIdentityOpenAndWithoutAReminder) {
    const ScheduledGoal made(at(2, 9), at(2, 10), u"  Write \n"_s);
    EXPECT_FALSE(made.id.isNull());
    EXPECT_EQ(made.date, at(2, 9));
    EXPECT_EQ(made.time, at(2, 10));
    EXPECT_EQ(made.goal, u"  Write \n"_s);
    EXPECT_FALSE(made.isCompleted);
    EXPECT_FALSE(made.notificationScheduled);
}

TEST_F(AScheduledGoal, TwoOfTheSameTextAreSeparate) {
    EXPECT_NE(goal(at(2, 9), at(2, 9)).id, goal(at(2, 9), at(2, 9)).id);
}

TEST_F(AScheduledGoal, StartsOnTheDayOfItsDateAtTheTimeOfItsTime) {
    const ScheduledGoal planned = goal(at(20, 23, 59, 59), at(1, 14, 30));
    EXPECT_EQ(planned.scheduledDateTime(m_calendar), at(20, 14, 30));
}

TEST_F(AScheduledGoal, StartsOnAWholeMinuteWhateverThePickersHeld) {
    const ScheduledGoal planned = goal(at(2, 9, 0, 17) + 0.25, at(2, 14, 30, 59) + 0.75);
    EXPECT_EQ(planned.scheduledDateTime(m_calendar), at(2, 14, 30));
}

TEST_F(AScheduledGoal, ThatStartsInAnHourThatIsSkippedStartsAfterTheGap) {
    EXPECT_EQ(goal(at(29, 12), at(2, 2, 30)).scheduledDateTime(m_calendar), at(29, 3, 30));
}

TEST_F(AScheduledGoal, ThatStartsInAnHourThatComesTwiceStartsInTheFirst) {
    const Date noon = moment(m_calendar, {2026, 10, 25, 12, 0, 0});
    const Date start = goal(noon, at(2, 2, 30)).scheduledDateTime(m_calendar);
    EXPECT_EQ(noon - start, 10.5 * 3600);
}

TEST_F(AScheduledGoal, IsRemindedOfOneHourAhead) {
    EXPECT_EQ(goal(at(2, 9), at(2, 14, 30)).notificationDateTime(m_calendar), at(2, 13, 30));
}

TEST_F(AScheduledGoal, InTheFirstHourOfADayIsRemindedOfOnTheDayBefore) {
    EXPECT_EQ(goal(at(3, 9), at(2, 0, 15)).notificationDateTime(m_calendar), at(2, 23, 15));
}

TEST_F(AScheduledGoal, AfterAGapIsRemindedOfOneRealHourAhead) {
    EXPECT_EQ(goal(at(29, 9), at(2, 3, 30)).notificationDateTime(m_calendar), at(29, 1, 30));
}

TEST_F(AScheduledGoal, MovesWithTheTimeZone) {
    const ScheduledGoal planned = goal(at(2, 12), at(2, 12));
    const Calendar utc = calendarIn("UTC");
    EXPECT_EQ(planned.scheduledDateTime(utc), moment(utc, {2026, 3, 2, 11, 0, 0}));
}

TEST_F(AScheduledGoal, IsTodayFromMidnightToMidnight) {
    const ScheduledGoal planned = goal(at(2, 12), at(2, 12));
    EXPECT_FALSE(planned.isToday(m_calendar, at(1, 23, 59, 59)));
    EXPECT_TRUE(planned.isToday(m_calendar, at(2, 0)));
    EXPECT_TRUE(planned.isToday(m_calendar, at(2, 23, 59, 59)));
    EXPECT_FALSE(planned.isToday(m_calendar, at(3, 0)));
}

TEST_F(AScheduledGoal, IsUpcomingFromNowToSevenDaysLaterBothIncluded) {
    const ScheduledGoal planned = goal(at(9, 12), at(9, 12));
    EXPECT_TRUE(planned.isUpcoming(m_calendar, at(2, 12)));
    EXPECT_FALSE(planned.isUpcoming(m_calendar, at(2, 12) - 0.001));
    EXPECT_TRUE(planned.isUpcoming(m_calendar, at(9, 12)));
    EXPECT_FALSE(planned.isUpcoming(m_calendar, at(9, 12) + 0.001));
}

TEST_F(AScheduledGoal, IsUpcomingByItsDateAndNotByItsStart) {
    EXPECT_TRUE(goal(at(2, 13), at(2, 8)).isUpcoming(m_calendar, at(2, 12)));
    EXPECT_FALSE(goal(at(2, 11), at(2, 18)).isUpcoming(m_calendar, at(2, 12)));
}

TEST_F(AScheduledGoal, IsUpcomingForSevenCalendarDaysAcrossAChangeOfTheClock) {
    EXPECT_TRUE(goal(at(31, 12), at(31, 12)).isUpcoming(m_calendar, at(24, 12)));
}

TEST_F(AScheduledGoal, OfTheYears1And9999HasAStart) {
    for (const int year : {1, 9999}) {
        const DateComponents day{year, 6, 15, 8, 0, 0};
        const ScheduledGoal planned = goal(moment(m_calendar, day), at(2, 14, 30));
        EXPECT_EQ(planned.scheduledDateTime(m_calendar),
                  moment(m_calendar, {year, 6, 15, 14, 30, 0}));
    }
}

TEST_F(AScheduledGoal, WhoseDayIsBeyondTheCalendarStartsAtItsDateAsStored) {
    const Date beyond = at(2, 9, 15, 30) + 2e5 * 366 * 86400.0;
    EXPECT_EQ(goal(beyond, at(2, 14, 30)).scheduledDateTime(m_calendar), beyond);
}

TEST_F(AScheduledGoal, IsUpcomingUntilNowAloneWhereSevenDaysOnTheCalendarEnds) {
    const Date lastDay = moment(m_calendar, {100'000, 12, 30, 12, 0, 0});
    EXPECT_TRUE(goal(lastDay, lastDay).isUpcoming(m_calendar, lastDay));
    EXPECT_FALSE(goal(lastDay + 1.0, lastDay).isUpcoming(m_calendar, lastDay));
}

/// One goal as its document has it.
const QByteArray document =
    R"([{"id":"01234567-89AB-CDEF-0123-456789ABCDEF","date":794134800.25,"time":794145600,)"
    R"("goal":"Write","isCompleted":true,"notificationScheduled":false}])";

TEST(ScheduledGoalsDocument, IsReadBack) {
    const auto goals = decodeScheduledGoals(document);
    ASSERT_THAT(goals, Optional(SizeIs(1)));
    const ScheduledGoal &goal = goals->front();
    EXPECT_EQ(goal.id, QUuid(u"01234567-89ab-cdef-0123-456789abcdef"_s));
    EXPECT_EQ(goal.date, Date::fromReferenceSeconds(794134800.25));
    EXPECT_EQ(goal.time, Date::fromReferenceSeconds(794145600));
    EXPECT_EQ(goal.goal, u"Write"_s);
    EXPECT_TRUE(goal.isCompleted);
    EXPECT_FALSE(goal.notificationScheduled);
}

TEST(ScheduledGoalsDocument, IsWrittenAsOneArrayInOrderWithTheSixKeys) {
    const auto goals = decodeScheduledGoals(document);
    ASSERT_TRUE(goals);
    EXPECT_EQ(encodeScheduledGoals(*goals), document);
    EXPECT_EQ(encodeScheduledGoals({}), QByteArray("[]"));
}

TEST(ScheduledGoalsDocument, LosesNothingOnTheWay) {
    std::vector<ScheduledGoal> goals;
    for (const QString &text : {u"<b>\"quotes\"</b>\n\tand 🎉"_s, QString(100'000, u'ä'), u""_s})
        goals.emplace_back(Date::fromReferenceSeconds(0.1 + 0.2),
                           Date::fromReferenceSeconds(-1e10 / 3), text);
    goals[1].isCompleted = true;
    goals[2].notificationScheduled = true;
    const auto written = encodeScheduledGoals(goals);
    ASSERT_TRUE(written);
    EXPECT_EQ(decodeScheduledGoals(*written), goals);
}

TEST(ScheduledGoalsDocument, NeedsEachOfTheSixKeys) {
    for (const char *key : {"id", "date", "time", "goal", "isCompleted", "notificationScheduled"}) {
        QByteArray lacking = document;
        lacking.replace(QByteArray("\"") + key + "\"", "\"other\"");
        EXPECT_EQ(decodeScheduledGoals(lacking), std::nullopt) << key;
    }
}

TEST(ScheduledGoalsDocument, OneBadRecordAmongAThousandMakesItUnreadable) {
    const QByteArray record = document.mid(1, document.size() - 2);
    QByteArray bad = record;
    bad.replace("notificationScheduled", "notification");
    QByteArray list = "[";
    for (int i = 0; i < 1000; ++i)
        list += (i == 700 ? bad : record) + (i < 999 ? "," : "]");
    EXPECT_EQ(decodeScheduledGoals(list), std::nullopt);
    list.replace("\"notification\"", "\"notificationScheduled\"");
    EXPECT_THAT(decodeScheduledGoals(list), Optional(SizeIs(1000)));
}

TEST(ScheduledGoalsDocument, WrongTypesAndTruncationMakeItUnreadable) {
    for (const auto &[from, to] : {std::pair<QByteArray, QByteArray>{"true", "1"},
                                   {"794145600", "\"794145600\""},
                                   {"\"Write\"", "null"},
                                   {"01234567-", "0123456-"},
                                   {"[", "{"},
                                   {"}]", "}"}}) {
        QByteArray broken = document;
        broken.replace(from, to);
        EXPECT_EQ(decodeScheduledGoals(broken), std::nullopt) << to.constData();
    }
}

TEST(ScheduledGoalsDocument, CannotHoldAMomentThatIsNoNumber) {
    EXPECT_EQ(encodeScheduledGoals({ScheduledGoal(
                  Date::fromReferenceSeconds(std::numeric_limits<double>::quiet_NaN()), Date(),
                  u"Write"_s)}),
              std::nullopt);
}

} // namespace
} // namespace tarne::test
