#pragma once

#include "Clock.h"
#include "DBusService.h"
#include "NotificationSchedule.h"
#include "UserNotificationCenter.h"
#include "WallClockAlarm.h"

#include <QTimer>

#include <deque>

namespace tarne {

/// Text as the bus and a notification daemon can take it: no lone surrogates and no control
/// characters but line feed and tab, each replaced by U+FFFD.
[[nodiscard]] QString plainNotificationText(const QString &text);

/// Notifications through org.freedesktop.Notifications, pending ones held in this process.
///
/// A notification that finds no daemon waits until one appears. The body is escaped where the
/// daemon reads markup, so that it is shown as the plain text it is. Completions come on the main
/// thread, after the call has returned; they report an error only without a session bus. Everything
/// is lost with the process. `clock` must outlive the centre.
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

private:
    struct Delivery {
        NotificationContent content;
        int attempts = 0;
    };

    std::optional<QString> busError() const;
    void showWhatIsDue();
    void deliver(Delivery delivery);
    void notify(Delivery delivery, bool escapesBody);
    void handleFailure(Delivery delivery, const QDBusMessage &error, quint64 owner);
    void deliverWaiting();

    DBusService m_daemon;
    const Clock &m_clock;
    CurrentCalendar m_calendar;

    NotificationSchedule m_schedule;
    WallClockAlarm m_alarm;
    QTimer m_review;

    std::deque<Delivery> m_asking;  ///< Due, and the daemon was asked what it can show.
    std::deque<Delivery> m_waiting; ///< Due, but there was no daemon to show them.
    quint64 m_owner = 0;            ///< Counts owners, to notice a change during a call.
    bool m_hasDaemon = false;       ///< An owner has appeared since the start and is still there.
};

} // namespace tarne
