#include "ScheduleView.h"

#include "ScheduleFixture.h"
#include "StoredKeys.h"

#include <QAbstractItemModelTester>

#include <gmock/gmock.h>

#include <random>
#include <utility>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using namespace test;

/// The screen and its sheet on 2026-03-02, a Monday, at 10:00 in New York.
class AScheduleView : public testing::Test {
protected:
    ScheduleView &view() {
        if (!m_view) {
            m_view =
                std::make_unique<ScheduleView>(m_fakes.platform(), QBindable<bool>(&m_isPresented));
            m_tester = std::make_unique<QAbstractItemModelTester>(m_view->goals());
        }
        return *m_view;
    }
    AddGoalSheet &sheet() { return *view().addGoalSheet(); }

    void add(int day, int hour, const QString &text) {
        view().scheduleViewModel().setSelectedDate(m_fakes.at(day, 12));
        view().scheduleViewModel().setSelectedTime(m_fakes.at(2, hour));
        sheet().setGoalText(text);
        sheet().scheduleGoal();
        m_fakes.time.runPending();
    }
    QStringList shownGoals() {
        QStringList goals;
        for (const ScheduledGoal &goal : view().goals()->goals())
            goals += goal.goal;
        return goals;
    }
    QVariant data(int row, ScheduledGoalModel::Role role) {
        return view().goals()->data(view().goals()->index(row), role);
    }

    SchedulePlatformFakes m_fakes;
    QProperty<bool> m_isPresented{true};
    std::unique_ptr<ScheduleView> m_view;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

TEST_F(AScheduleView, BeginsOnTodayWithoutItsSheet) {
    EXPECT_FALSE(view().showingAddGoal());
    EXPECT_EQ(view().selectedDateText(), u"March 2, 2026"_s);
    EXPECT_EQ(view().goalsCountText(), u"0 goals scheduled"_s);
    EXPECT_EQ(view().calendar()->selectedDay(), QDate(2026, 3, 2));
}

TEST_F(AScheduleView, MakesItsControllerWhichAsksForThePermissionToNotify) {
    EXPECT_EQ(m_fakes.notifications.authorizationRequests, 0);
    view();
    EXPECT_EQ(m_fakes.notifications.authorizationRequests, 1);
}

TEST_F(AScheduleView, ShowsTheStoredGoalsOfTheDay) {
    m_fakes.defaults.setObject(
        keys::scheduledGoals,
        *encodeScheduledGoals({{m_fakes.at(2, 9), m_fakes.at(2, 15), u"stored"_s}}));
    EXPECT_THAT(shownGoals(), ElementsAre(u"stored"_s));
    EXPECT_EQ(data(0, ScheduledGoalModel::TimeText), u"3:00 PM"_s);
}

TEST_F(AScheduleView, OpensTheSheetAndClosesItself) {
    view().openAddGoal();
    EXPECT_TRUE(view().showingAddGoal());
    view().close();
    EXPECT_FALSE(m_isPresented.value());
}

TEST_F(AScheduleView, CountsWithoutASingular) {
    add(2, 12, u"one"_s);
    EXPECT_EQ(view().goalsCountText(), u"1 goals scheduled"_s);
}

TEST_F(AScheduleView, APickedDayIsSelectedAndItsGoalsAreShown) {
    add(5, 12, u"thursday"_s);
    add(2, 12, u"monday"_s);
    EXPECT_THAT(shownGoals(), ElementsAre(u"monday"_s));
    view().calendar()->moveByDays(3);
    EXPECT_THAT(shownGoals(), ElementsAre(u"thursday"_s));
    EXPECT_EQ(view().selectedDateText(), u"March 5, 2026"_s);
    EXPECT_EQ(view().scheduleViewModel().selectedDate(), m_fakes.at(5, 12));
}

TEST_F(AScheduleView, PastDaysCanBeSelected) {
    view().calendar()->moveByMonths(-2);
    EXPECT_EQ(view().selectedDateText(), u"January 2, 2026"_s);
}

TEST_F(AScheduleView, TheCountersReferToTodayAndTheFutureWhateverDayIsSelected) {
    add(2, 9, u"past"_s);
    add(2, 23, u"tonight"_s);
    add(9, 9, u"next week"_s);
    view().calendar()->moveByMonths(-12);
    EXPECT_EQ(view().todaysCount(), 2);
    EXPECT_EQ(view().upcomingCount(), 2);
    EXPECT_THAT(shownGoals(), IsEmpty());
}

TEST_F(AScheduleView, TickingOffLeavesTheGoalInThePaneAndTakesItFromTheUpcomingOnes) {
    add(2, 23, u"tonight"_s);
    view().toggleGoalCompletion(0);
    EXPECT_EQ(data(0, ScheduledGoalModel::IsCompleted), true);
    EXPECT_EQ(view().upcomingCount(), 0);
    EXPECT_EQ(view().todaysCount(), 1);
    view().toggleGoalCompletion(0);
    EXPECT_EQ(view().upcomingCount(), 1);
}

TEST_F(AScheduleView, DeletesTheRowsGoalAtOnce) {
    add(2, 15, u"later"_s);
    add(2, 12, u"sooner"_s);
    view().deleteGoal(0);
    EXPECT_THAT(shownGoals(), ElementsAre(u"later"_s));
    EXPECT_EQ(view().goalsCountText(), u"1 goals scheduled"_s);
    view().deleteGoal(0);
    EXPECT_EQ(view().goals()->count(), 0);
}

TEST_F(AScheduleView, ARowThatIsNotThereIsIgnored) {
    add(2, 12, u"kept"_s);
    for (const int row : {-1, 1, 1000}) {
        view().toggleGoalCompletion(row);
        view().deleteGoal(row);
    }
    EXPECT_THAT(shownGoals(), ElementsAre(u"kept"_s));
}

TEST_F(AScheduleView, ADeletedGoalsRowGoesByItself) {
    add(2, 12, u"a"_s);
    add(2, 13, u"b"_s);
    add(2, 14, u"c"_s);
    int resets = 0;
    QObject::connect(view().goals(), &QAbstractItemModel::modelReset, [&] { ++resets; });
    view().deleteGoal(1);
    EXPECT_EQ(resets, 0);
    EXPECT_THAT(shownGoals(), ElementsAre(u"a"_s, u"c"_s));
}

TEST_F(AScheduleView, TheSheetsGoalFieldHasTheFocusWhenItAppears) {
    EXPECT_FALSE(sheet().isGoalTextFocused());
    sheet().appear();
    EXPECT_TRUE(sheet().isGoalTextFocused());
}

TEST_F(AScheduleView, SchedulingAddsTheGoalAndClosesTheSheet) {
    view().openAddGoal();
    sheet().setGoalText(u" Write "_s);
    sheet().scheduleGoal();
    EXPECT_FALSE(view().showingAddGoal());
    EXPECT_THAT(shownGoals(), ElementsAre(u" Write "_s));
}

TEST_F(AScheduleView, SchedulingWithoutATextDoesNothing) {
    view().openAddGoal();
    sheet().setGoalText(u" \n "_s);
    EXPECT_FALSE(sheet().canAddGoal());
    sheet().scheduleGoal();
    EXPECT_TRUE(view().showingAddGoal());
    EXPECT_THAT(shownGoals(), IsEmpty());
}

TEST_F(AScheduleView, CancellingKeepsWhatWasEntered) {
    view().openAddGoal();
    sheet().setGoalText(u"Write"_s);
    sheet().calendar()->moveByDays(4);
    sheet().timeFields()->step(0, 3);
    sheet().cancel();
    EXPECT_FALSE(view().showingAddGoal());
    view().openAddGoal();
    EXPECT_EQ(sheet().goalText(), u"Write"_s);
    EXPECT_EQ(sheet().calendar()->selectedDay(), QDate(2026, 3, 6));
    EXPECT_EQ(sheet().timeFields()->time(), QTime(1, 0));
}

TEST_F(AScheduleView, TheSheetsDayAndTheScreensAreOne) {
    sheet().calendar()->moveByDays(4);
    EXPECT_EQ(view().calendar()->selectedDay(), QDate(2026, 3, 6));
    EXPECT_EQ(view().selectedDateText(), u"March 6, 2026"_s);
    view().calendar()->moveByDays(1);
    EXPECT_EQ(sheet().calendar()->selectedDay(), QDate(2026, 3, 7));
}

TEST_F(AScheduleView, TheSheetCannotReachAPastDayYetKeepsItUntilAnotherIsPicked) {
    view().calendar()->moveByMonths(-1);
    sheet().appear();
    EXPECT_EQ(sheet().calendar()->monthTitle(), u"March 2026"_s);
    EXPECT_EQ(view().scheduleViewModel().selectedDate(),
              m_fakes.calendar.date({2026, 2, 2, 10, 0, 0}));
    sheet().calendar()->moveByDays(-1);
    EXPECT_EQ(view().calendar()->selectedDay(), QDate(2026, 3, 2));
}

TEST_F(AScheduleView, APickedTimeKeepsTheDayOfTheTimeAndIsAWholeMinute) {
    sheet().timeFields()->type(0, u"3"_s);
    EXPECT_EQ(view().scheduleViewModel().selectedTime(), m_fakes.at(2, 3));
    sheet().timeFields()->step(2, 1);
    sheet().timeFields()->type(1, u"4"_s);
    EXPECT_EQ(view().scheduleViewModel().selectedTime(), m_fakes.at(2, 15, 4));
}

TEST_F(AScheduleView, ATimeThatTheDayAtHandSkipsIsThatOfTheNextDay) {
    view().scheduleViewModel().setSelectedTime(m_fakes.at(8, 1, 30));
    sheet().timeFields()->step(0, 1);
    EXPECT_EQ(view().scheduleViewModel().selectedTime(), m_fakes.at(9, 2, 30));
    EXPECT_EQ(sheet().timeFields()->time(), QTime(2, 30));
    sheet().timeFields()->step(0, -1);
    EXPECT_EQ(sheet().timeFields()->time(), QTime(1, 30));
}

TEST_F(AScheduleView, AfterAGoalTheTimeIsThatOfNow) {
    sheet().timeFields()->step(0, 5);
    sheet().setGoalText(u"Write"_s);
    m_fakes.time.setWallClock(m_fakes.at(2, 10, 7));
    sheet().scheduleGoal();
    EXPECT_EQ(sheet().timeFields()->time(), QTime(10, 7));
    EXPECT_EQ(sheet().goalText(), QString());
}

TEST_F(AScheduleView, TheCountersFollowTheClockWithAnyChange) {
    add(2, 11, u"soon"_s);
    EXPECT_EQ(view().upcomingCount(), 1);
    m_fakes.time.setWallClock(m_fakes.at(2, 11));
    sheet().setGoalText(u"a"_s);
    EXPECT_EQ(view().upcomingCount(), 0);
    m_fakes.time.setWallClock(m_fakes.at(3, 0));
    sheet().timeFields()->step(0, 1);
    EXPECT_EQ(view().todaysCount(), 0);
}

TEST_F(AScheduleView, TypingShowsNothingAnewUntilTimeHasChangedSomething) {
    add(2, 11, u"soon"_s);
    int shown = 0;
    QObject::connect(&view(), &ScheduleView::goalsShown, [&] { ++shown; });
    const auto showsAnewAt = [&](Date moment) {
        m_fakes.time.setWallClock(moment);
        sheet().setGoalText(sheet().goalText() + u'a');
        return std::exchange(shown, 0) > 0;
    };
    EXPECT_FALSE(showsAnewAt(m_fakes.at(2, 10, 59, 59)));
    EXPECT_TRUE(showsAnewAt(m_fakes.at(2, 11))); // It starts.
    EXPECT_FALSE(showsAnewAt(m_fakes.at(2, 23, 59, 59)));
    EXPECT_TRUE(showsAnewAt(m_fakes.at(3, 0)));  // Another day.
    EXPECT_TRUE(showsAnewAt(m_fakes.at(2, 10))); // The clock is set back.
    EXPECT_EQ(view().upcomingCount(), 1);
    m_fakes.calendar = Calendar(QTimeZone("Asia/Tokyo"), m_fakes.calendar.locale());
    EXPECT_TRUE(showsAnewAt(m_fakes.time.now()));
}

TEST_F(AScheduleView, MidnightMovesTheSheetsFirstDayWithAnyChange) {
    view();
    m_fakes.time.setWallClock(m_fakes.at(3, 0));
    sheet().setGoalText(u"a"_s);
    view().calendar()->moveByDays(-1);
    sheet().calendar()->moveByDays(-7);
    EXPECT_EQ(view().calendar()->selectedDay(), QDate(2026, 3, 3));
}

TEST_F(AScheduleView, AZoneChangedUnderTheScreenIsFollowedWithTheNextChange) {
    add(2, 9, u"morning"_s);
    EXPECT_EQ(data(0, ScheduledGoalModel::TimeText), u"9:00 AM"_s);
    int changes = 0;
    QObject::connect(view().goals(), &QAbstractItemModel::dataChanged, [&] { ++changes; });
    m_fakes.calendar = Calendar(QTimeZone("Europe/Berlin"), m_fakes.calendar.locale());
    sheet().setGoalText(u"a"_s);
    EXPECT_EQ(data(0, ScheduledGoalModel::TimeText), u"3:00 PM"_s);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(sheet().timeFields()->time(), QTime(16, 0));
}

TEST_F(AScheduleView, TheHourThatTodaySkipsCanBeChosenForAnotherDay) {
    m_fakes.time.setWallClock(m_fakes.at(8, 10)); // Clocks went from 2 to 3.
    view().calendar()->moveByDays(2);
    ClockTimeFields &time = *sheet().timeFields();
    time.step(0, -8);
    EXPECT_EQ(time.time(), QTime(2, 0));
    time.step(1, 30);
    EXPECT_EQ(time.time(), QTime(2, 30));
    sheet().setGoalText(u"a"_s);
    sheet().scheduleGoal();
    const ScheduledGoal goal = view().scheduleViewModel().scheduledGoals().at(0);
    EXPECT_EQ(goal.scheduledDateTime(m_fakes.calendar), m_fakes.at(10, 2, 30));
    EXPECT_EQ(data(0, ScheduledGoalModel::TimeText), u"2:30 AM"_s);
}

TEST_F(AScheduleView, EveryMinuteOfTheDayCanBeChosenOnADayThatSkipsSome) {
    // Of an hour at 2, of half an hour at 2, and of midnight.
    for (const auto &[zone, day] : {std::pair{"America/New_York", DateComponents{2026, 3, 8, 12}},
                                    std::pair{"Australia/Lord_Howe", DateComponents{2026, 10, 4}},
                                    std::pair{"Africa/Cairo", DateComponents{2026, 4, 24, 12}}}) {
        m_fakes.calendar = Calendar(QTimeZone(zone), QLocale(u"de_DE"_s));
        m_fakes.time.setWallClock(m_fakes.calendar.date(day).value());
        ScheduleView screen(m_fakes.platform(), QBindable<bool>(&m_isPresented));
        ClockTimeFields &fields = *screen.addGoalSheet()->timeFields();
        fields.toMinimum(0);
        fields.toMinimum(1);
        for (int minute = 0; minute < 24 * 60; ++minute) {
            ASSERT_EQ(fields.time(), QTime(minute / 60, minute % 60)) << zone;
            fields.step(1, 1);
            if (minute % 60 == 59)
                fields.step(0, 1);
        }
    }
}

TEST_F(AScheduleView, ADayOnWhoseEndTheClocksGoForwardCanBePickedLate) {
    // In Nuuk Saturday ends at 23:00 that night.
    m_fakes.calendar = Calendar(QTimeZone("America/Nuuk"), m_fakes.calendar.locale());
    view().scheduleViewModel().setSelectedDate(m_fakes.at(27, 23, 30));
    view().calendar()->moveByDays(1);
    EXPECT_EQ(view().calendar()->selectedDay(), QDate(2026, 3, 28));
    EXPECT_EQ(view().selectedDateText(), u"March 28, 2026"_s);
    view().calendar()->moveByDays(1);
    EXPECT_EQ(view().calendar()->selectedDay(), QDate(2026, 3, 29));
}

TEST_F(AScheduleView, AChangeTellsOfTheRowsThatChangedAlone) {
    add(2, 12, u"a"_s);
    add(2, 13, u"b"_s);
    add(2, 14, u"c"_s);
    QList<int> rows;
    QObject::connect(view().goals(), &QAbstractItemModel::dataChanged,
                     [&](const QModelIndex &first, const QModelIndex &last) {
                         EXPECT_EQ(first, last);
                         rows += first.row();
                     });
    view().toggleGoalCompletion(1);
    EXPECT_EQ(rows, QList<int>{1});
}

TEST_F(AScheduleView, AnAddedGoalsRowComesByItself) {
    add(2, 12, u"a"_s);
    add(2, 14, u"c"_s);
    int resets = 0;
    QObject::connect(view().goals(), &QAbstractItemModel::modelReset, [&] { ++resets; });
    add(2, 13, u"b"_s);
    EXPECT_EQ(resets, 0);
    EXPECT_THAT(shownGoals(), ElementsAre(u"a"_s, u"b"_s, u"c"_s));
}

TEST_F(AScheduleView, RowsAreThoseOfTheControllerInAThousandRandomSteps) {
    std::mt19937 random(20260302);
    const auto pick = [&](int count) {
        return std::uniform_int_distribution<int>(0, count - 1)(random);
    };
    for (int step = 0; step < 1000; ++step) {
        const int rows = view().goals()->count();
        if (const int what = pick(10); what < 4)
            add(2 + pick(2), pick(24), QString::number(step));
        else if (what < 6 && rows > 0)
            view().deleteGoal(pick(rows));
        else if (what < 8 && rows > 0)
            view().toggleGoalCompletion(pick(rows));
        else
            view().scheduleViewModel().setSelectedDate(m_fakes.at(2 + pick(3), 12));
        ASSERT_EQ(view().goals()->goals(), view().scheduleViewModel().goalsForSelectedDate());
    }
}

TEST_F(AScheduleView, CountersAreThoseOfTheControllerInAThousandRandomSteps) {
    std::mt19937 random(20260302);
    const auto pick = [&](int count) {
        return std::uniform_int_distribution<int>(0, count - 1)(random);
    };
    for (int step = 0; step < 1000; ++step) {
        const int rows = view().goals()->count();
        // On and back, most often by less than the goals lie apart.
        m_fakes.time.setWallClock(m_fakes.at(2 + pick(4) / 3, pick(24), 30 * pick(2)));
        if (const int what = pick(10); what == 0)
            add(2 + pick(2), pick(24), u"goal"_s);
        else if (what == 1 && rows > 0)
            view().toggleGoalCompletion(pick(rows));
        else if (what == 2 && rows > 0)
            view().deleteGoal(pick(rows));
        else if (what < 5)
            sheet().timeFields()->step(0, 1);
        else
            sheet().setGoalText(QString::number(step));
        const ScheduleViewModel &controller = view().scheduleViewModel();
        ASSERT_EQ(view().todaysCount(), static_cast<int>(controller.todaysGoals().size())) << step;
        ASSERT_EQ(view().upcomingCount(), static_cast<int>(controller.upcomingGoals().size()))
            << step;
    }
}

TEST_F(AScheduleView, TheSheetTellsWhenAGoalCanBeAdded) {
    int changes = 0;
    QObject::connect(&sheet(), &AddGoalSheet::goalTextChanged, [&] { ++changes; });
    sheet().setGoalText(u"a"_s);
    EXPECT_TRUE(sheet().canAddGoal());
    EXPECT_EQ(changes, 1);
}

} // namespace
} // namespace tarne::test
