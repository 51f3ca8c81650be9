#include "ScheduleViewModel.h"

#include "ScheduleFixture.h"
#include "StoredKeys.h"
#include "UuidText.h"

#include <gmock/gmock.h>

#include <limits>
#include <thread>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace tarne {
namespace {

using namespace Qt::StringLiterals;
using namespace test;

class Schedule : public testing::Test {
protected:
    ScheduleViewModel &schedule() {
        if (!m_schedule)
            m_schedule = std::make_unique<ScheduleViewModel>(m_fakes.platform());
        return *m_schedule;
    }

    /// Adds a goal as the sheet does; the reminder's acceptance has come.
    ScheduledGoal add(const QString &text, Date date, Date time) {
        schedule().setSelectedDate(date);
        schedule().setSelectedTime(time);
        schedule().setGoalText(text);
        schedule().addGoal();
        m_fakes.time.runPending();
        return schedule().scheduledGoals().back();
    }
    ScheduledGoal addAt(int day, int hour, const QString &text = u"Write"_s) {
        return add(text, m_fakes.at(day, hour), m_fakes.at(day, hour));
    }

    QByteArray stored() const {
        return m_fakes.defaults.dataForKey(keys::scheduledGoals).value_or(QByteArray());
    }

    static QStringList texts(const std::vector<ScheduledGoal> &goals) {
        QStringList texts;
        for (const ScheduledGoal &goal : goals)
            texts += goal.goal;
        return texts;
    }

    SchedulePlatformFakes m_fakes;
    std::unique_ptr<ScheduleViewModel> m_schedule;
};

TEST_F(Schedule, StartsEmptyOnTodayAndNowWithoutAText) {
    EXPECT_THAT(schedule().scheduledGoals(), IsEmpty());
    EXPECT_EQ(schedule().selectedDate(), m_fakes.time.now());
    EXPECT_EQ(schedule().selectedTime(), m_fakes.time.now());
    EXPECT_EQ(schedule().goalText(), QString());
}

TEST_F(Schedule, LoadsWhatIsStored) {
    const std::vector<ScheduledGoal> goals{{m_fakes.at(2, 9), m_fakes.at(2, 9), u"a"_s},
                                           {m_fakes.at(1, 9), m_fakes.at(1, 9), u"b"_s}};
    m_fakes.defaults.setObject(keys::scheduledGoals, *encodeScheduledGoals(goals));
    EXPECT_EQ(schedule().scheduledGoals(), goals);
}

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

TEST_F(Schedule, StartsEmptyAndSilentlyWhenTheStoredListIsUnreadable) {
    m_fakes.defaults.setObject(keys::scheduledGoals, QByteArray("[{\"id\":1}]"));
    EXPECT_THAT(schedule().scheduledGoals(), IsEmpty());
    EXPECT_THAT(m_fakes.log.lines(), IsEmpty());
    EXPECT_EQ(stored(), QByteArray("[{\"id\":1}]"));
}

TEST_F(Schedule, ReplacesAnUnreadableStoredListWithItsNextSave) {
    m_fakes.defaults.setObject(keys::scheduledGoals, QByteArray("broken"));
    addAt(3, 9);
    EXPECT_EQ(decodeScheduledGoals(stored()), schedule().scheduledGoals());
}

TEST_F(Schedule, LoadingAnUnreadableListLaterKeepsTheOneInMemory) {
    addAt(3, 9);
    m_fakes.defaults.setObject(keys::scheduledGoals, QByteArray("broken"));
    schedule().loadScheduledGoals();
    EXPECT_THAT(schedule().scheduledGoals(), SizeIs(1));
    m_fakes.defaults.removeObjectForKey(keys::scheduledGoals);
    schedule().loadScheduledGoals();
    EXPECT_THAT(schedule().scheduledGoals(), SizeIs(1));
}

TEST_F(Schedule, CanAddAGoalWhoseTextHoldsMoreThanWhiteSpace) {
    for (const QString &blank : {u""_s, u"   "_s, u" \t\r\n\u2028\u3000\u00a0"_s}) {
        schedule().setGoalText(blank);
        EXPECT_FALSE(schedule().canAddGoal());
    }
    for (const QString &text : {u"a"_s, u"  a \n"_s, u"<b>"_s, u"🎉"_s}) {
        schedule().setGoalText(text);
        EXPECT_TRUE(schedule().canAddGoal());
    }
}

TEST_F(Schedule, AddsAGoalOfTheSelectedDayTimeAndTextAsTyped) {
    const ScheduledGoal goal = add(u"  Write \n"_s, m_fakes.at(5, 8), m_fakes.at(2, 14, 30));
    EXPECT_EQ(goal.date, m_fakes.at(5, 8));
    EXPECT_EQ(goal.time, m_fakes.at(2, 14, 30));
    EXPECT_EQ(goal.goal, u"  Write \n"_s);
    EXPECT_FALSE(goal.isCompleted);
}

TEST_F(Schedule, AddingKeepsTheSelectedDayEmptiesTheTextAndSelectsTheTimeOfNow) {
    add(u"Write"_s, m_fakes.at(5, 8), m_fakes.at(2, 14, 30));
    EXPECT_EQ(schedule().selectedDate(), m_fakes.at(5, 8));
    EXPECT_EQ(schedule().goalText(), QString());
    EXPECT_EQ(schedule().selectedTime(), m_fakes.time.now());
}

TEST_F(Schedule, AddsEvenWhatTheSheetWouldNotLetThrough) {
    EXPECT_EQ(addAt(3, 9, u" "_s).goal, u" "_s);
}

TEST_F(Schedule, KeepsGoalsInTheOrderInWhichTheyWereAdded) {
    addAt(5, 9, u"later"_s);
    addAt(3, 9, u"sooner"_s);
    EXPECT_EQ(texts(schedule().scheduledGoals()), (QStringList{u"later"_s, u"sooner"_s}));
    EXPECT_EQ(texts(decodeScheduledGoals(stored()).value()),
              (QStringList{u"later"_s, u"sooner"_s}));
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

TEST_F(Schedule, DeletingRemovesTheGoalSavesAndCancelsItsReminder) {
    addAt(3, 9, u"kept"_s);
    const ScheduledGoal goal = addAt(4, 9, u"deleted"_s);
    m_fakes.notifications.calls.clear();
    schedule().deleteGoal(goal);
    EXPECT_EQ(texts(schedule().scheduledGoals()), QStringList{u"kept"_s});
    EXPECT_EQ(texts(decodeScheduledGoals(stored()).value()), QStringList{u"kept"_s});
    EXPECT_THAT(m_fakes.notifications.calls, ElementsAre(u"remove "_s + uuidString(goal.id)));
}

TEST_F(Schedule, DeletingAGoalThatIsGoneSavesAndCancelsAllTheSame) {
    const ScheduledGoal goal = addAt(4, 9, u"deleted"_s);
    schedule().deleteGoal(goal);
    m_fakes.defaults.setObject(keys::scheduledGoals, u"overwritten"_s);
    m_fakes.notifications.calls.clear();
    schedule().deleteGoal(goal);
    EXPECT_THAT(decodeScheduledGoals(stored()).value(), IsEmpty());
    EXPECT_THAT(m_fakes.notifications.calls, ElementsAre(u"remove "_s + uuidString(goal.id)));
}

TEST_F(Schedule, DeletesByIdentityAlsoFromItsOwnList) {
    addAt(3, 9, u"same"_s);
    addAt(3, 9, u"same"_s);
    schedule().deleteGoal(schedule().scheduledGoals().front());
    EXPECT_THAT(schedule().scheduledGoals(), SizeIs(1));
}

TEST_F(Schedule, DeletesEveryEntryOfTheSameIdentity) {
    const ScheduledGoal goal(m_fakes.at(3, 9), m_fakes.at(3, 9), u"twice"_s);
    m_fakes.defaults.setObject(keys::scheduledGoals, *encodeScheduledGoals({goal, goal}));
    schedule().deleteGoal(goal);
    EXPECT_THAT(schedule().scheduledGoals(), IsEmpty());
}

TEST_F(Schedule, TogglingTicksOffAndOnAgainAndSaves) {
    const ScheduledGoal goal = addAt(3, 9);
    schedule().toggleGoalCompletion(goal);
    EXPECT_TRUE(schedule().scheduledGoals().front().isCompleted);
    EXPECT_TRUE(decodeScheduledGoals(stored())->front().isCompleted);
    schedule().toggleGoalCompletion(goal);
    EXPECT_FALSE(schedule().scheduledGoals().front().isCompleted);
}

TEST_F(Schedule, TogglingLeavesTheReminderAlone) {
    const ScheduledGoal goal = addAt(3, 9);
    m_fakes.notifications.calls.clear();
    schedule().toggleGoalCompletion(goal);
    schedule().toggleGoalCompletion(goal);
    EXPECT_THAT(m_fakes.notifications.calls, IsEmpty());
    EXPECT_THAT(m_fakes.notifications.pending, SizeIs(1));
}

TEST_F(Schedule, TogglingAGoalThatIsGoneDoesNothing) {
    const ScheduledGoal goal = addAt(3, 9);
    schedule().deleteGoal(goal);
    m_fakes.defaults.takeWrites();
    schedule().toggleGoalCompletion(goal);
    EXPECT_THAT(m_fakes.defaults.takeWrites(), IsEmpty());
    EXPECT_THAT(schedule().scheduledGoals(), IsEmpty());
}

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

TEST_F(Schedule, TellsItsObserversOfEveryChange) {
    int goals = 0;
    QStringList changes;
    schedule();
    QObject::connect(m_schedule.get(), &ScheduleViewModel::scheduledGoalsChanged, [&] { ++goals; });
    QObject::connect(m_schedule.get(), &ScheduleViewModel::selectedDateChanged,
                     [&] { changes += u"date"_s; });
    QObject::connect(m_schedule.get(), &ScheduleViewModel::selectedTimeChanged,
                     [&] { changes += u"time"_s; });
    QObject::connect(m_schedule.get(), &ScheduleViewModel::goalTextChanged,
                     [&] { changes += u"text"_s; });
    const ScheduledGoal goal = add(u"Write"_s, m_fakes.at(3, 9), m_fakes.at(3, 9));
    EXPECT_EQ(goals, 2); // Added, and its reminder accepted.
    EXPECT_THAT(changes, ElementsAre(u"date"_s, u"time"_s, u"text"_s, u"text"_s, u"time"_s));
    schedule().toggleGoalCompletion(goal);
    schedule().deleteGoal(goal);
    EXPECT_EQ(goals, 4);
}

TEST_F(Schedule, StoresNothingAndKeepsTheListWhenItCannotBeWrittenAsJson) {
    addAt(3, 9);
    const QByteArray before = stored();
    schedule().setSelectedDate(
        Date::fromReferenceSeconds(std::numeric_limits<double>::quiet_NaN()));
    schedule().setGoalText(u"never"_s);
    schedule().addGoal();
    m_fakes.time.runPending();
    EXPECT_THAT(schedule().scheduledGoals(), SizeIs(2));
    EXPECT_EQ(stored(), before);
    EXPECT_THAT(m_fakes.log.lines(), IsEmpty());
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

TEST_F(Schedule, SurvivesADiskThatKeepsNothing) {
    m_fakes.defaults.failsWrites = true;
    addAt(3, 9);
    EXPECT_THAT(schedule().scheduledGoals(), SizeIs(1));
    EXPECT_THAT(m_fakes.log.lines(), IsEmpty());
}

} // namespace
} // namespace tarne
