#pragma once

#include "FeedbackFakes.h"
#include "ManualTime.h"
#include "MemoryDefaults.h"
#include "RecordingLog.h"
#include "RecordingPlatform.h"
#include "SessionViewModel.h"

#include <QLocale>
#include <QTimeZone>

namespace tarne::shots {

/// A machine of fakes and a session controller on it.
struct OfflineSession {
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

    test::ManualTime time;
    test::RecordingLog log;
    test::MemoryDefaults defaults;
    NotificationCenter center;
    test::RecordingUserNotifications userNotifications;
    test::RecordingBackgroundActivities activities;
    test::CountingHaptics haptics;
    SessionViewModel controller{platform()};
    test::FeedbackFakes feedback{time, log};
};

} // namespace tarne::shots
