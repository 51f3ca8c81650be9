#pragma once

#include "ManualTime.h"
#include "MemoryDefaults.h"
#include "RecordingLog.h"
#include "RecordingPlatform.h"
#include "ScheduleViewModel.h"

namespace tarne::test {

/// The platform of a schedule under the test's hand, in New York on Monday, 2026-03-02, 10:00.
struct SchedulePlatformFakes {
    SchedulePlatform platform() {
        return {time, time, log, defaults, notifications, [this] { return calendar; }};
    }

    /// A moment of March 2026 in the zone at hand.
    Date at(int day, int hour, int minute = 0, int second = 0) const {
        return calendar.date({2026, 3, day, hour, minute, second}).value();
    }

    Calendar calendar{QTimeZone("America/New_York"), QLocale(QStringLiteral("en_US"))};
    ManualTime time{Date::fromUnixSeconds(1772463600.0)};
    RecordingLog log;
    MemoryDefaults defaults;
    RecordingUserNotifications notifications;
};

} // namespace tarne::test
