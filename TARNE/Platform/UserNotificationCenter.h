#pragma once

#include "Calendar.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace tarne {

/// What a notification shows. It always plays the default sound.
struct NotificationContent {
    QString title;
    QString body;

    friend bool operator==(const NotificationContent &, const NotificationContent &) = default;
};

/// A request to show a notification. With a moment (calendar components, not repeating, worked out
/// in the zone of the moment) it is pending until then; without one it is shown at once and never
/// pending. A moment that was past when the request was added is accepted and never appears.
struct NotificationRequest {
    QString identifier; ///< A pending request with the same identifier is replaced.
    NotificationContent content;
    std::optional<DateComponents> trigger;

    friend bool operator==(const NotificationRequest &, const NotificationRequest &) = default;
};

/// The desktop's local notifications.
///
/// Every operation returns at once. Completions may arrive late, on any thread, or never; they get
/// the description of an error, or nothing on success.
class UserNotificationCenter {
public:
    using Completion = std::function<void(std::optional<QString> error)>;

    virtual ~UserNotificationCenter() = default;

    /// Asks for alert, sound and badge. `granted` is false only together with an error.
    virtual void
    requestAuthorization(std::function<void(bool granted, std::optional<QString> error)> done) = 0;
    virtual void add(const NotificationRequest &request, Completion done) = 0;
    virtual void removePendingNotificationRequests(const QStringList &identifiers) = 0;
    virtual void removeAllPendingNotificationRequests() = 0;
};

} // namespace tarne
