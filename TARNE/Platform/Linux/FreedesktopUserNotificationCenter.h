#pragma once

#include "Clock.h"
#include "NotificationDaemon.h"
#include "NotificationSchedule.h"
#include "UserNotificationCenter.h"
#include "WallClockAlarm.h"

#include <QTimer>

#include <vector>

namespace tarne {

/// Notifications through org.freedesktop.Notifications, pending ones held in this process.
///
/// Completions come on the main thread, after the call has returned; they report an error only
/// without a session bus. Everything is lost with the process. `clock` must outlive the centre.
class FreedesktopUserNotificationCenter final : public QObject, public UserNotificationCenter {
    Q_OBJECT

public:
    FreedesktopUserNotificationCenter(QDBusConnection sessionBus, const Clock &clock,
                                      CurrentCalendar calendar);

    void requestAuthorization(
        std::function<void(bool granted, std::optional<QString> error)> done) override;
    void add(const NotificationRequest &request, Completion done) override;
    void removePendingNotificationRequests(const QStringList &identifiers) override;
    void removeAllPendingNotificationRequests() override;

    /// Adds a request with a moment that was made some time ago: whether its moment was past is
    /// asked of that time.
    void addMadeAt(Date made, const NotificationRequest &request);

    /// What waits for its moment, in the order in which it was added.
    [[nodiscard]] const std::vector<NotificationSchedule::Pending> &pending() const {
        return m_schedule.pending();
    }

Q_SIGNALS:
    /// The user has clicked on a notification. The token lets a window come to the front; it may be
    /// empty.
    void activated(const QString &activationToken);

private:
    std::optional<QString> busError() const;
    void showWhatIsDue();

    NotificationDaemon m_daemon;
    const Clock &m_clock;
    CurrentCalendar m_calendar;

    NotificationSchedule m_schedule;
    WallClockAlarm m_alarm;
    QTimer m_review;
};

} // namespace tarne
