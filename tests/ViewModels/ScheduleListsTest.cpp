#include "ScheduleTest.h"

using testing::IsEmpty;
using testing::SizeIs;

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using namespace test;

TEST_F(Schedule, ListsTheSelectedDayInTheOrderOfTheStarts) {
    addAt(3, 15, u"afternoon"_s);
    addAt(4, 8, u"other day"_s);
    addAt(3, 9, u"morning"_s);
    schedule().toggleGoalCompletion(addAt(3, 12, u"noon, done"_s));
    schedule().setSelectedDate(m_fakes.at(3, 23));
    EXPECT_EQ(texts(schedule().goalsForSelectedDate()),
              (QStringList{u"morning"_s, u"noon, done"_s, u"afternoon"_s}));
}

TEST_F(Schedule, ListsPastDaysToo) {
    addAt(1, 9, u"past"_s);
    EXPECT_EQ(texts(schedule().goalsForSelectedDate()), QStringList{u"past"_s});
}

TEST_F(Schedule, CountsAGoalLaterTodayAmongTodaysAndUpcoming) {
    addAt(2, 23);
    EXPECT_THAT(schedule().todaysGoals(), SizeIs(1));
    EXPECT_THAT(schedule().upcomingGoals(), SizeIs(1));
}

TEST_F(Schedule, AGoalEarlierTodayIsNotUpcomingYetItsReminderCountsAsAccepted) {
    EXPECT_TRUE(addAt(2, 9).notificationScheduled);
    EXPECT_THAT(schedule().todaysGoals(), SizeIs(1));
    EXPECT_THAT(schedule().upcomingGoals(), IsEmpty());
}

TEST_F(Schedule, AGoalThatStartsThisVeryMomentIsNotUpcoming) {
    addAt(2, 10);
    EXPECT_THAT(schedule().upcomingGoals(), IsEmpty());
    m_fakes.time.setWallClock(m_fakes.at(2, 10) - 0.001);
    EXPECT_THAT(schedule().upcomingGoals(), SizeIs(1));
}

TEST_F(Schedule, AGoalThirtyDaysAheadIsUpcomingThoughTheRecordSaysOtherwise) {
    const ScheduledGoal goal = addAt(31, 12);
    EXPECT_THAT(schedule().upcomingGoals(), SizeIs(1));
    EXPECT_FALSE(goal.isUpcoming(m_fakes.calendar, m_fakes.time.now()));
}

TEST_F(Schedule, ACompletedGoalIsNotUpcomingButStaysAmongTodays) {
    schedule().toggleGoalCompletion(addAt(2, 23));
    EXPECT_THAT(schedule().upcomingGoals(), IsEmpty());
    EXPECT_THAT(schedule().todaysGoals(), SizeIs(1));
    EXPECT_THAT(schedule().goalsForSelectedDate(), SizeIs(1));
}

TEST_F(Schedule, TodayPassesWithTheClock) {
    addAt(2, 23);
    m_fakes.time.setWallClock(m_fakes.at(3, 0));
    EXPECT_THAT(schedule().todaysGoals(), IsEmpty());
    EXPECT_THAT(schedule().upcomingGoals(), IsEmpty());
}

TEST_F(Schedule, AZoneThatChangesUnderTheProgramMovesTheDays) {
    addAt(2, 23);
    m_fakes.calendar = Calendar(QTimeZone("Asia/Tokyo"), QLocale::c());
    schedule().setSelectedDate(m_fakes.at(3, 12));
    EXPECT_THAT(schedule().goalsForSelectedDate(), SizeIs(1));
}

} // namespace
} // namespace tarne::test
