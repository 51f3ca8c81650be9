#include "AddGoalSheet.h"

#include "ScheduleDay.h"

namespace tarne {

AddGoalSheet::AddGoalSheet(ScheduleViewModel &scheduleViewModel, QBindable<bool> isPresented)
    : m_scheduleViewModel(scheduleViewModel),
      m_isPresented(isPresented),
      m_calendar(scheduleViewModel.calendar().locale(), MonthCalendar::Range::FromToday,
                 [&scheduleViewModel] {
                     return scheduleViewModel.calendar().day(scheduleViewModel.now());
                 }),
      m_timeFields(scheduleViewModel.calendar().locale()) {
    connect(&m_scheduleViewModel, &ScheduleViewModel::goalTextChanged, this,
            &AddGoalSheet::goalTextChanged);
    // Whatever changed, the day and the time are shown by the clock and the zone of the moment.
    for (const auto changed :
         {&ScheduleViewModel::selectedDateChanged, &ScheduleViewModel::selectedTimeChanged,
          &ScheduleViewModel::goalTextChanged})
        connect(&m_scheduleViewModel, changed, this, &AddGoalSheet::showSelection);
    connect(&m_calendar, &MonthCalendar::picked, this,
            [this](QDate day) { selectDay(m_scheduleViewModel, day); });
    connect(&m_timeFields, &ClockTimeFields::picked, this, &AddGoalSheet::selectTime);
    showSelection();
}

void AddGoalSheet::setGoalTextFocused(bool isFocused) {
    if (m_isGoalTextFocused == isFocused)
        return;
    m_isGoalTextFocused = isFocused;
    Q_EMIT isGoalTextFocusedChanged();
}

void AddGoalSheet::appear() {
    m_calendar.showSelection();
    setGoalTextFocused(true);
}

void AddGoalSheet::scheduleGoal() {
    if (!canAddGoal())
        return;
    m_scheduleViewModel.addGoal();
    m_isPresented.setValue(false);
}

void AddGoalSheet::cancel() {
    m_isPresented.setValue(false);
}

void AddGoalSheet::showSelection() {
    const Calendar calendar = m_scheduleViewModel.calendar();
    m_calendar.setSelectedDay(calendar.day(m_scheduleViewModel.selectedDate()));
    m_calendar.followToday();
    const DateComponents clock = calendar.dateComponents(m_scheduleViewModel.selectedTime());
    m_timeFields.setTime(QTime(clock.hour, clock.minute));
}

/// Another clock time on the day that the controller's time has. One that the day leaves out
/// becomes another, which the fields then show.
void AddGoalSheet::selectTime(QTime time) {
    const Calendar calendar = m_scheduleViewModel.calendar();
    DateComponents components = calendar.dateComponents(m_scheduleViewModel.selectedTime());
    components.hour = time.hour();
    components.minute = time.minute();
    components.second = 0;
    if (const std::optional<Date> moment = calendar.date(components))
        m_scheduleViewModel.setSelectedTime(*moment);
}

} // namespace tarne
