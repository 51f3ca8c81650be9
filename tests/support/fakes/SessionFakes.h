#pragma once

#include "ManualTime.h"
#include "MemoryDefaults.h"
#include "NotificationCenter.h"
#include "RecordingLog.h"
#include "RecordingPlatform.h"
#include "SessionViewModel.h"

#include <QLocale>
#include <QTimeZone>

namespace tarne::test {

/// What a session controller stands on: a manual clock, a store in memory, and nothing of the
/// machine.
struct SessionFakes {
    SessionPlatform platform() {
        return {.clock = time,
                .runLoop = time,
                .log = log,
                .defaults = defaults,
                .notificationCenter = center,
                .userNotifications = userNotifications,
                .backgroundActivities = activities,
                .haptics = haptics,
                .calendar = [] { return Calendar(QTimeZone::utc(), QLocale::c()); }};
    }

    ManualTime time;
    RecordingLog log;
    MemoryDefaults defaults;
    NotificationCenter center;
    RecordingUserNotifications userNotifications;
    RecordingBackgroundActivities activities;
    CountingHaptics haptics;
};

} // namespace tarne::test
