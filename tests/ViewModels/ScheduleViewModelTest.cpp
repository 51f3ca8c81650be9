#include "ScheduleTest.h"
#include "UuidText.h"

#include <limits>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using namespace test;

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

TEST_F(Schedule, TogglesTheFirstEntryOfAnIdentityAlone) {
    const ScheduledGoal goal(m_fakes.at(3, 9), m_fakes.at(3, 9), u"twice"_s);
    m_fakes.defaults.setObject(keys::scheduledGoals, *encodeScheduledGoals({goal, goal}));
    schedule().toggleGoalCompletion(goal);
    EXPECT_TRUE(schedule().scheduledGoals().front().isCompleted);
    EXPECT_FALSE(schedule().scheduledGoals().back().isCompleted);
}

TEST_F(Schedule, TogglingAGoalThatIsGoneDoesNothing) {
    const ScheduledGoal goal = addAt(3, 9);
    schedule().deleteGoal(goal);
    m_fakes.defaults.takeWrites();
    schedule().toggleGoalCompletion(goal);
    EXPECT_THAT(m_fakes.defaults.takeWrites(), IsEmpty());
    EXPECT_THAT(schedule().scheduledGoals(), IsEmpty());
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

TEST_F(Schedule, TellsItsObserversOfAValueThatIsSetAnew) {
    QStringList changes;
    schedule();
    QObject::connect(m_schedule.get(), &ScheduleViewModel::selectedDateChanged,
                     [&] { changes += u"date"_s; });
    QObject::connect(m_schedule.get(), &ScheduleViewModel::selectedTimeChanged,
                     [&] { changes += u"time"_s; });
    QObject::connect(m_schedule.get(), &ScheduleViewModel::goalTextChanged,
                     [&] { changes += u"text"_s; });
    schedule().setSelectedDate(schedule().selectedDate());
    schedule().setSelectedTime(schedule().selectedTime());
    schedule().setGoalText(schedule().goalText());
    EXPECT_THAT(changes, ElementsAre(u"date"_s, u"time"_s, u"text"_s));
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

TEST_F(Schedule, SurvivesADiskThatKeepsNothing) {
    m_fakes.defaults.failsWrites = true;
    addAt(3, 9);
    EXPECT_THAT(schedule().scheduledGoals(), SizeIs(1));
    EXPECT_THAT(m_fakes.log.lines(), IsEmpty());
}

} // namespace
} // namespace tarne::test
