#pragma once

#include "ScheduleViewModel.h"

#include <QDate>

namespace tarne {

/// Whether both reckon and write alike.
inline bool areAlike(const Calendar &a, const Calendar &b) {
    return a.timeZone() == b.timeZone() && a.locale() == b.locale();
}

/// Selects another day at the clock time of the one selected so far, as picked in a calendar.
inline void selectDay(ScheduleViewModel &scheduleViewModel, QDate day) {
    const Calendar calendar = scheduleViewModel.calendar();
    DateComponents components = calendar.dateComponents(scheduleViewModel.selectedDate());
    components.year = day.year();
    components.month = day.month();
    components.day = day.day();
    if (const std::optional<Date> moment = calendar.date(components))
        scheduleViewModel.setSelectedDate(*moment);
}

} // namespace tarne
