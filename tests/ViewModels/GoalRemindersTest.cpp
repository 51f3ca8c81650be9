#include "ScheduleTest.h"
#include "UuidText.h"

#include <thread>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using namespace test;

TEST_F(Schedule, AsksForThePermissionToNotifyOnceItIsLoaded) {
    schedule();
    EXPECT_EQ(m_fakes.notifications.authorizationRequests, 1);
    EXPECT_THAT(m_fakes.log.lines(), IsEmpty());
}

TEST_F(Schedule, LogsAnErrorOfThePermissionAndGoesOn) {
    m_fakes.notifications.error = u"no bus"_s;
    schedule();
    EXPECT_THAT(m_fakes.log.takeLines(), ElementsAre(u"Notification permission error: no bus"_s));
    addAt(3, 9);
    EXPECT_THAT(schedule().scheduledGoals(), SizeIs(1));
}

TEST_F(Schedule, AfterARefusalRemindersAreAskedForAllTheSame) {
    m_fakes.notifications.refuses = true;
    EXPECT_TRUE(addAt(3, 9).notificationScheduled);
    EXPECT_THAT(m_fakes.notifications.pending, SizeIs(1));
    EXPECT_THAT(m_fakes.log.lines(), IsEmpty());
}

TEST_F(Schedule, SavesAnAddedGoalBeforeItsReminderIsAskedFor) {
    m_fakes.notifications.answersNever = true;
    addAt(3, 9);
    EXPECT_EQ(decodeScheduledGoals(stored()), schedule().scheduledGoals());
    EXPECT_THAT(m_fakes.defaults.takeWrites(), ElementsAre(keys::scheduledGoals));
}

TEST_F(Schedule, AsksForAReminderOneHourAheadUnderTheGoalsIdentity) {
    const ScheduledGoal goal =
        add(u"Write <b>\"it\"</b>"_s, m_fakes.at(5, 8), m_fakes.at(2, 0, 30));
    EXPECT_THAT(m_fakes.notifications.added,
                ElementsAre(NotificationRequest{
                    uuidString(goal.id),
                    {u"Focus Session Reminder"_s,
                     u"Your scheduled focus session 'Write <b>\"it\"</b>' starts in 1 hour"_s},
                    DateComponents{2026, 3, 4, 23, 30, 0}}));
}

TEST_F(Schedule, AsksForTheReminderInTheZoneAtHand) {
    m_fakes.calendar = Calendar(QTimeZone("Asia/Tokyo"), QLocale::c());
    add(u"Write"_s, m_fakes.at(5, 8), m_fakes.at(5, 14));
    EXPECT_EQ(m_fakes.notifications.added.front().trigger, (DateComponents{2026, 3, 5, 13, 0, 0}));
}

TEST_F(Schedule, ASkippedHourHasItsReminderOneRealHourAheadOfTheStart) {
    add(u"Write"_s, m_fakes.at(8, 12), m_fakes.at(2, 2, 30));
    EXPECT_EQ(m_fakes.notifications.added.front().trigger, (DateComponents{2026, 3, 8, 1, 30, 0}));
}

TEST_F(Schedule, NotesAndSavesThatTheReminderWasAccepted) {
    EXPECT_TRUE(addAt(3, 9).notificationScheduled);
    EXPECT_TRUE(decodeScheduledGoals(stored())->front().notificationScheduled);
}

TEST_F(Schedule, NotesTheAcceptanceOnTheMainQueueOnly) {
    m_fakes.notifications.answersLate = true;
    addAt(3, 9);
    std::thread centre([&] { m_fakes.notifications.lateCompletions.front()(std::nullopt); });
    centre.join();
    EXPECT_FALSE(schedule().scheduledGoals().front().notificationScheduled);
    m_fakes.time.runPending();
    EXPECT_TRUE(schedule().scheduledGoals().front().notificationScheduled);
}

TEST_F(Schedule, LogsAReminderThatFailsAndKeepsTheGoal) {
    schedule();
    m_fakes.notifications.error = u"refused"_s;
    EXPECT_FALSE(addAt(3, 9).notificationScheduled);
    EXPECT_THAT(m_fakes.log.lines(), ElementsAre(u"Error scheduling notification: refused"_s));
    EXPECT_THAT(schedule().scheduledGoals(), SizeIs(1));
}

TEST_F(Schedule, AReminderThatIsNeverAnsweredLeavesTheGoalWithoutOne) {
    m_fakes.notifications.answersNever = true;
    EXPECT_FALSE(addAt(3, 9).notificationScheduled);
}

TEST_F(Schedule, AGoalThatWasDeletedBeforeItsAcceptanceIsSkipped) {
    m_fakes.notifications.answersLate = true;
    schedule().deleteGoal(addAt(3, 9));
    m_fakes.defaults.takeWrites();
    m_fakes.notifications.lateCompletions.front()(std::nullopt);
    m_fakes.time.runPending();
    EXPECT_THAT(schedule().scheduledGoals(), IsEmpty());
    EXPECT_THAT(m_fakes.defaults.takeWrites(), IsEmpty());
}

TEST_F(Schedule, AnAcceptanceAfterTheScreenHasClosedIsStillSaved) {
    m_fakes.notifications.answersLate = true;
    addAt(3, 9);
    m_schedule.reset();
    m_fakes.notifications.lateCompletions.front()(std::nullopt);
    m_fakes.time.runPending();
    EXPECT_TRUE(decodeScheduledGoals(stored())->front().notificationScheduled);
}

TEST_F(Schedule, TogglingLeavesTheReminderAlone) {
    const ScheduledGoal goal = addAt(3, 9);
    m_fakes.notifications.calls.clear();
    schedule().toggleGoalCompletion(goal);
    schedule().toggleGoalCompletion(goal);
    EXPECT_THAT(m_fakes.notifications.calls, IsEmpty());
    EXPECT_THAT(m_fakes.notifications.pending, SizeIs(1));
}

TEST_F(Schedule, ARestoredGoalKeepsItsFlagsAndIsNotRemindedOfAnew) {
    schedule().toggleGoalCompletion(addAt(3, 9));
    const auto goals = schedule().scheduledGoals();
    m_fakes.notifications.calls.clear();
    m_schedule.reset();
    EXPECT_EQ(schedule().scheduledGoals(), goals);
    EXPECT_TRUE(schedule().scheduledGoals().front().notificationScheduled);
    EXPECT_TRUE(schedule().scheduledGoals().front().isCompleted);
    EXPECT_THAT(m_fakes.notifications.calls, IsEmpty());
}

} // namespace
} // namespace tarne::test
