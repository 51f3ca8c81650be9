#include "ScheduleView.h"

#include "DateFormatter.h"
#include "ScheduleDay.h"

using namespace Qt::StringLiterals;

namespace tarne {

ScheduleView::ScheduleView(SchedulePlatform platform, QBindable<bool> isPresented)
    : m_scheduleViewModel(std::move(platform)),
      m_isPresented(isPresented),
      m_addGoalSheet(m_scheduleViewModel, QBindable<bool>(&m_showingAddGoal)),
      m_calendar(m_scheduleViewModel.calendar().locale(), MonthCalendar::Range::Unlimited,
                 [this] { return m_scheduleViewModel.calendar().day(m_scheduleViewModel.now()); }),
      m_goals(m_scheduleViewModel.calendar()) {
    // Whatever changed, the counters are those of the moment.
    for (const auto changed :
         {&ScheduleViewModel::scheduledGoalsChanged, &ScheduleViewModel::selectedDateChanged,
          &ScheduleViewModel::selectedTimeChanged, &ScheduleViewModel::goalTextChanged})
        connect(&m_scheduleViewModel, changed, this, &ScheduleView::show);
    connect(&m_calendar, &MonthCalendar::picked, this,
            [this](QDate day) { selectDay(m_scheduleViewModel, day); });
    show();
}

QString ScheduleView::selectedDateText() const {
    return DateFormatter(m_scheduleViewModel.calendar())
        .longDate(m_scheduleViewModel.selectedDate());
}

QString ScheduleView::goalsCountText() const {
    return QString::number(m_goals.count()) + u" goals scheduled"_s;
}

void ScheduleView::openAddGoal() {
    m_showingAddGoal = true;
}

void ScheduleView::close() {
    m_isPresented.setValue(false);
}

void ScheduleView::toggleGoalCompletion(int row) {
    if (row >= 0 && row < m_goals.count())
        m_scheduleViewModel.toggleGoalCompletion(m_goals.goalAt(row));
}

void ScheduleView::deleteGoal(int row) {
    if (row >= 0 && row < m_goals.count())
        m_scheduleViewModel.deleteGoal(m_goals.goalAt(row));
}

void ScheduleView::show() {
    const Calendar calendar = m_scheduleViewModel.calendar();
    m_calendar.setSelectedDay(calendar.day(m_scheduleViewModel.selectedDate()));
    m_calendar.followToday();
    m_goals.setGoals(m_scheduleViewModel.goalsForSelectedDate(), calendar);
    m_todaysCount = static_cast<int>(m_scheduleViewModel.todaysGoals().size());
    m_upcomingCount = static_cast<int>(m_scheduleViewModel.upcomingGoals().size());
    Q_EMIT goalsShown();
}

} // namespace tarne
