#include "NotificationSchedule.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

Calendar calendarIn(const char *zone) {
    return Calendar(QTimeZone(zone), QLocale::c());
}

NotificationRequest request(const QString &identifier, const DateComponents &trigger) {
    return {identifier, {identifier, {}}, trigger};
}

NotificationContent shown(const QString &identifier) {
    return {identifier, {}};
}

/// A moment of 2026-03-02 in UTC.
Date at(int hour, int minute = 0, double second = 0) {
    return Date::fromUnixSeconds(1772409600.0 + hour * 3600 + minute * 60 + second);
}

constexpr double day = 86'400;

class ANotificationSchedule : public testing::Test {
protected:
    void add(const QString &identifier, const DateComponents &trigger, Date now) {
        m_schedule.add(request(identifier, trigger), now, m_calendar);
    }
    std::vector<NotificationContent> dueAt(Date now) {
        std::vector<NotificationContent> contents;
        for (const NotificationRequest &request : m_schedule.takeDue(now, m_calendar))
            contents.push_back(request.content);
        return contents;
    }

    Calendar m_calendar = calendarIn("UTC");
    NotificationSchedule m_schedule;
};

TEST_F(ANotificationSchedule, ARequestIsDueAtItsMomentAndNotBefore) {
    add(u"a"_s, {2026, 3, 2, 15, 0, 0}, at(14));
    EXPECT_EQ(m_schedule.nextMoment(m_calendar), at(15));
    EXPECT_THAT(dueAt(at(14, 59, 59.999)), IsEmpty());
    EXPECT_THAT(dueAt(at(15)), ElementsAre(shown(u"a"_s)));
}

TEST_F(ANotificationSchedule, ARequestIsDueOnce) {
    add(u"a"_s, {2026, 3, 2, 15, 0, 0}, at(14));
    EXPECT_THAT(dueAt(at(16)), SizeIs(1));
    EXPECT_THAT(dueAt(at(17)), IsEmpty());
    EXPECT_TRUE(m_schedule.isEmpty());
}

TEST_F(ANotificationSchedule, AMomentThatIsPastWhenAddedNeverFallsDue) {
    add(u"a"_s, {2026, 3, 2, 13, 59, 59}, at(14));
    EXPECT_TRUE(m_schedule.isEmpty());
    EXPECT_THAT(dueAt(at(15)), IsEmpty());
}

TEST_F(ANotificationSchedule, AMomentThatIsNowWhenAddedIsDueAtOnce) {
    add(u"a"_s, {2026, 3, 2, 14, 0, 0}, at(14));
    EXPECT_EQ(m_schedule.nextMoment(m_calendar), at(14));
    EXPECT_THAT(dueAt(at(14)), ElementsAre(shown(u"a"_s)));
    add(u"b"_s, {2026, 3, 2, 14, 0, 0}, at(14, 0, 0.001));
    EXPECT_TRUE(m_schedule.isEmpty());
}

TEST_F(ANotificationSchedule, AnHourThatOccursTwiceIsDueNowWhenItsFirstTimeIsNow) {
    m_calendar = calendarIn("Europe/Berlin");
    const DateComponents repeated{2026, 10, 25, 2, 30, 0};
    const auto moments = momentsOf(repeated, m_calendar);
    add(u"a"_s, repeated, moments[0]);
    EXPECT_EQ(m_schedule.nextMoment(m_calendar), moments[0]);
    m_schedule.removeAll();
    add(u"b"_s, repeated, moments[1]);
    EXPECT_EQ(m_schedule.nextMoment(m_calendar), moments[1]);
}

TEST_F(ANotificationSchedule, TheSameIdentifierReplaces) {
    add(u"a"_s, {2026, 3, 2, 15, 0, 0}, at(14));
    add(u"a"_s, {2026, 3, 2, 17, 0, 0}, at(14));
    EXPECT_THAT(dueAt(at(16)), IsEmpty());
    EXPECT_THAT(dueAt(at(17)), SizeIs(1));
}

TEST_F(ANotificationSchedule, APastMomentReplacesAPendingOneWithNothing) {
    add(u"a"_s, {2026, 3, 2, 15, 0, 0}, at(14));
    add(u"a"_s, {2026, 3, 2, 13, 0, 0}, at(14));
    EXPECT_TRUE(m_schedule.isEmpty());
}

TEST_F(ANotificationSchedule, RemovesByIdentifier) {
    add(u"a"_s, {2026, 3, 2, 15, 0, 0}, at(14));
    add(u"b"_s, {2026, 3, 2, 15, 0, 0}, at(14));
    m_schedule.remove({u"a"_s, u"unknown"_s});
    EXPECT_THAT(dueAt(at(15)), ElementsAre(shown(u"b"_s)));
}

TEST_F(ANotificationSchedule, RemovesAll) {
    add(u"a"_s, {2026, 3, 2, 15, 0, 0}, at(14));
    m_schedule.removeAll();
    EXPECT_EQ(m_schedule.nextMoment(m_calendar), std::nullopt);
}

TEST_F(ANotificationSchedule, GivesTheEarliestFirstAndEqualsInTheOrderOfAdding) {
    add(u"late"_s, {2026, 3, 2, 16, 0, 0}, at(14));
    add(u"early"_s, {2026, 3, 2, 15, 0, 0}, at(14));
    add(u"late too"_s, {2026, 3, 2, 16, 0, 0}, at(14));
    EXPECT_EQ(m_schedule.nextMoment(m_calendar), at(15));
    EXPECT_THAT(dueAt(at(18)),
                ElementsAre(shown(u"early"_s), shown(u"late"_s), shown(u"late too"_s)));
}

TEST_F(ANotificationSchedule, ARestoredRequestWhoseMomentHasPassedIsDueOnce) {
    add(u"a"_s, {2026, 3, 2, 15, 0, 0}, at(14));
    NotificationSchedule next;
    for (const auto &pending : m_schedule.pending())
        next.restore(pending);
    EXPECT_THAT(next.takeDue(at(14, 59), m_calendar), IsEmpty());
    EXPECT_THAT(next.takeDue(at(20), m_calendar), SizeIs(1));
    EXPECT_TRUE(next.isEmpty());
}

TEST_F(ANotificationSchedule, AClockSetForwardByADayMakesItDueOnce) {
    add(u"a"_s, {2026, 3, 2, 15, 0, 0}, at(14));
    EXPECT_THAT(dueAt(at(14) + day), SizeIs(1));
    EXPECT_THAT(dueAt(at(15)), IsEmpty());
}

TEST_F(ANotificationSchedule, AClockSetBackByADayLeavesItsMomentOnTheCalendar) {
    add(u"a"_s, {2026, 3, 2, 15, 0, 0}, at(14));
    EXPECT_THAT(dueAt(at(15) - day), IsEmpty());
    EXPECT_EQ(m_schedule.nextMoment(m_calendar), at(15));
    EXPECT_THAT(dueAt(at(15)), SizeIs(1));
}

TEST_F(ANotificationSchedule, AZoneChangedToTheWestDefersItsMoment) {
    add(u"a"_s, {2026, 3, 2, 15, 0, 0}, at(14));
    m_calendar = calendarIn("America/New_York");
    EXPECT_THAT(dueAt(at(15)), IsEmpty());
    EXPECT_EQ(m_schedule.nextMoment(m_calendar), at(20));
}

TEST_F(ANotificationSchedule, AZoneChangedToTheEastPastItsMomentMakesItDue) {
    add(u"a"_s, {2026, 3, 2, 15, 0, 0}, at(14));
    m_calendar = calendarIn("Asia/Tokyo");
    EXPECT_THAT(dueAt(at(14)), SizeIs(1));
}

TEST_F(ANotificationSchedule, AnHourThatOccursTwiceIsDueTheFirstTimeThatIsStillToCome) {
    m_calendar = calendarIn("Europe/Berlin");
    const DateComponents repeated{2026, 10, 25, 2, 30, 0};
    const auto moments = momentsOf(repeated, m_calendar);
    ASSERT_THAT(moments, SizeIs(2));
    EXPECT_EQ(moments[1] - moments[0], 3600.0);

    add(u"before both"_s, repeated, moments[0] - 60);
    EXPECT_EQ(m_schedule.nextMoment(m_calendar), moments[0]);
    m_schedule.removeAll();
    add(u"between"_s, repeated, moments[0] + 60);
    EXPECT_EQ(m_schedule.nextMoment(m_calendar), moments[1]);
}

TEST(MomentsOfComponents, AnHourThatIsSkippedLiesAsMuchLaterAsTheClockJumps) {
    const Calendar berlin = calendarIn("Europe/Berlin");
    const auto moments = momentsOf({2026, 3, 29, 2, 30, 0}, berlin);
    ASSERT_THAT(moments, SizeIs(1));
    EXPECT_EQ(berlin.dateComponents(moments[0]), (DateComponents{2026, 3, 29, 3, 30, 0}));
}

TEST(MomentsOfComponents, ASkippedDayLiesOnTheNextOne) {
    const Calendar apia = calendarIn("Pacific/Apia");
    const auto moments = momentsOf({2011, 12, 30, 12, 0, 0}, apia);
    ASSERT_THAT(moments, SizeIs(1));
    EXPECT_EQ(apia.dateComponents(moments[0]), (DateComponents{2011, 12, 31, 12, 0, 0}));
}

TEST(MomentsOfComponents, ThereAreNoneForADayThatDoesNotExist) {
    EXPECT_THAT(momentsOf({2026, 2, 30, 12, 0, 0}, calendarIn("UTC")), IsEmpty());
    EXPECT_THAT(momentsOf({2026, 2, 28, 24, 0, 0}, calendarIn("UTC")), IsEmpty());
}

TEST(MomentsOfComponents, HoldFromTheYear1ToTheYear9999) {
    for (const int year : {1, 1970, 9999}) {
        const DateComponents components{year, 6, 15, 12, 30, 15};
        const Calendar calendar = calendarIn("Europe/Berlin");
        const auto moments = momentsOf(components, calendar);
        ASSERT_THAT(moments, SizeIs(1)) << year;
        EXPECT_EQ(calendar.dateComponents(moments[0]), components) << year;
    }
}

TEST(MomentsOfComponents, EveryHourOfAYearIsFoundInZonesWithJumps) {
    for (const char *zone : {"Europe/Berlin", "America/Sao_Paulo", "Australia/Lord_Howe",
                             "Africa/Casablanca", "Asia/Kathmandu", "Pacific/Kiritimati"}) {
        const Calendar calendar = calendarIn(zone);
        for (int hour = 0; hour < 366 * 24; ++hour) {
            const Date moment = Date::fromUnixSeconds(1767225600.0 + hour * 3600.0);
            EXPECT_THAT(momentsOf(calendar.dateComponents(moment), calendar),
                        testing::Contains(moment))
                << zone << " " << hour;
        }
    }
}

} // namespace
} // namespace tarne::test
