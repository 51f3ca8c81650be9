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

/// Another clock time on the day that the controller's time has. Since only hour and minute count,
/// one that the clocks skip on that day is taken from the next.
void AddGoalSheet::selectTime(QTime time) {
    const Calendar calendar = m_scheduleViewModel.calendar();
    const auto momentOn = [&](QDate day) {
        return calendar.date({day.year(), day.month(), day.day(), time.hour(), time.minute(), 0});
    };
    const auto shows = [&](Date moment) {
        const DateComponents clock = calendar.dateComponents(moment);
        return clock.hour == time.hour() && clock.minute == time.minute();
    };
    const QDate day = calendar.day(m_scheduleViewModel.selectedTime());
    std::optional<Date> moment = momentOn(day);
    if (moment && !shows(*moment))
        moment = momentOn(day.addDays(1));
    if (moment)
        m_scheduleViewModel.setSelectedTime(*moment);
}

} // namespace tarne
