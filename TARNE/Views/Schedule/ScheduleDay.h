#pragma once

#include "ScheduleViewModel.h"

#include <QDate>

namespace tarne {

/// Whether both reckon and write alike.
inline bool areAlike(const Calendar &a, const Calendar &b) {
    return a.timeZone() == b.timeZone() && a.locale() == b.locale();
}

/// Selects another day, as picked in a calendar, at the clock time of the one selected so far; at
/// noon where the day ends before that time.
inline void selectDay(ScheduleViewModel &scheduleViewModel, QDate day) {
    const Calendar calendar = scheduleViewModel.calendar();
    DateComponents components = calendar.dateComponents(scheduleViewModel.selectedDate());
    components.year = day.year();
    components.month = day.month();
    components.day = day.day();
    std::optional<Date> moment = calendar.date(components);
    if (moment && calendar.day(*moment) != day)
        moment = calendar.date({day.year(), day.month(), day.day(), 12, 0, 0});
    if (moment)
        scheduleViewModel.setSelectedDate(*moment);
}

} // namespace tarne
