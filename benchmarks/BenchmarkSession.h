#pragma once

#include "ManualTime.h"
#include "RecordingPlatform.h"
#include "SessionViewModel.h"

#include <QTimeZone>

namespace tarne::benchmarks {

class NoLog final : public Log {
public:
    void line(const QString &) override {}
};

/// A session controller on a store, with nothing else of a platform around it.
class BenchmarkSession {
public:
    BenchmarkSession(UserDefaults &defaults, Date now) : time(now), m_defaults(defaults) {}

    static Calendar calendar() {
        return Calendar(QTimeZone("Europe/Berlin"),
                        QLocale(QLocale::English, QLocale::UnitedStates));
    }

    test::ManualTime time;

private:
    UserDefaults &m_defaults;
    NoLog m_log;
    NotificationCenter m_center;
    test::RecordingUserNotifications m_userNotifications;
    test::RecordingBackgroundActivities m_activities;
    test::CountingHaptics m_haptics;

public:
    SessionViewModel controller{{.clock = time,
                                 .runLoop = time,
                                 .log = m_log,
                                 .defaults = m_defaults,
                                 .notificationCenter = m_center,
                                 .userNotifications = m_userNotifications,
                                 .backgroundActivities = m_activities,
                                 .haptics = m_haptics,
                                 .calendar = calendar}};
};

} // namespace tarne::benchmarks
