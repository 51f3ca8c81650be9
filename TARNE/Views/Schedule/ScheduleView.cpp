#include "ScheduleView.h"

#include "DateFormatter.h"
#include "ScheduleDay.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

/// `now` itself where the calendar ends.
Date startOfTomorrow(Date now, const Calendar &calendar) {
    const std::optional<Date> tomorrow = calendar.dateByAdding(Calendar::Unit::day, 1, now);
    return tomorrow ? calendar.startOfDay(*tomorrow) : now;
}

} // namespace

ScheduleView::ScheduleView(SchedulePlatform platform, QBindable<bool> isPresented)
    : m_scheduleViewModel(std::move(platform)),
      m_isPresented(isPresented),
      m_addGoalSheet(m_scheduleViewModel, QBindable<bool>(&m_showingAddGoal)),
      m_calendar(m_scheduleViewModel.calendar().locale(), MonthCalendar::Range::Unlimited,
                 [this] { return m_scheduleViewModel.calendar().day(m_scheduleViewModel.now()); }),
      m_goals(m_scheduleViewModel.calendar()) {
    for (const auto changed :
         {&ScheduleViewModel::scheduledGoalsChanged, &ScheduleViewModel::selectedDateChanged})
        connect(&m_scheduleViewModel, changed, this, &ScheduleView::show);
    // Whatever changed, the counters are those of the moment. But every character that is typed is
    // a change, and the lists of ten thousand goals take longer than a character should.
    for (const auto changed :
         {&ScheduleViewModel::selectedTimeChanged, &ScheduleViewModel::goalTextChanged})
        connect(&m_scheduleViewModel, changed, this, &ScheduleView::showUnlessStillRight);
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

void ScheduleView::showUnlessStillRight() {
    const Date now = m_scheduleViewModel.now();
    const Calendar calendar = m_scheduleViewModel.calendar();
    if (now < m_validity->from || now >= m_validity->until ||
        !areAlike(calendar, m_validity->calendar))
        show();
}

void ScheduleView::show() {
    const Date now = m_scheduleViewModel.now();
    const Calendar calendar = m_scheduleViewModel.calendar();
    m_calendar.setSelectedDay(calendar.day(m_scheduleViewModel.selectedDate()));
    m_calendar.followToday();
    m_goals.setGoals(m_scheduleViewModel.goalsForSelectedDate(), calendar);
    m_todaysCount = static_cast<int>(m_scheduleViewModel.todaysGoals().size());
    const ScheduleViewModel::Goals upcoming = m_scheduleViewModel.upcomingGoals();
    m_upcomingCount = static_cast<int>(upcoming.size());
    m_validity = Validity{calendar, now, startOfTomorrow(now, calendar)};
    if (!upcoming.empty())
        m_validity->until =
            std::min(m_validity->until, upcoming.front().scheduledDateTime(calendar));
    Q_EMIT goalsShown();
}

} // namespace tarne
