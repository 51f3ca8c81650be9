#pragma once

#include "DBusService.h"
#include "UserNotificationCenter.h"

#include <QDBusConnection>
#include <QSet>

#include <deque>
#include <functional>

namespace tarne {

/// Text as the bus and a notification daemon can take it: no lone surrogates and no control
/// characters but line feed and tab, each replaced by U+FFFD.
[[nodiscard]] QString plainNotificationText(const QString &text);

/// The desktop's notification daemon, org.freedesktop.Notifications on the session bus.
///
/// Notifications are shown in the order in which they were handed over, a few at a time. One that
/// finds no daemon waits until one appears, and one that takes its time is waited for. The body is
/// escaped where the daemon reads markup, so that it is shown as the plain text it is. Where the
/// daemon has actions, a click on a notification and its button "Open" are told by `activated`.
/// Main thread only.
class NotificationDaemon final : public QObject {
    Q_OBJECT

public:
    /// Called once, when the notification is no longer this object's business: the daemon has taken
    /// it, or has refused it for good, which standard error was told. Not called where the bus ends
    /// before.
    using Done = std::function<void()>;

    explicit NotificationDaemon(QDBusConnection sessionBus);

    [[nodiscard]] bool isBusConnected() const { return m_daemon.isBusConnected(); }

    void show(const NotificationRequest &request, Done done = {});

    /// Drops what the daemon was not given yet. `Done` is not called for it.
    void withdraw(const QStringList &identifiers);

    /// Whether notifications are shown that the user can still click on.
    [[nodiscard]] bool awaitsClicks() const { return !m_clickable.isEmpty(); }

Q_SIGNALS:
    /// The user has clicked on a notification. The token lets a window come to the front; it may be
    /// empty.
    void activated(const QString &activationToken);
    /// The last notification that could be clicked on is gone.
    void clicksEnded();

private Q_SLOTS:
    void noteToken(uint id, const QString &token);
    void noteAction(uint id, const QString &action);
    void noteClosed(uint id);

private:
    struct Delivery {
        NotificationRequest request;
        Done done;
        int attempts = 0;
    };
    /// What the daemon that is about to get a notification can do.
    struct Abilities {
        bool escapesBody = true;
        bool hasActions = false;
    };

    void askForAbilities();
    void notify(Delivery delivery, Abilities abilities);
    void finish(const Delivery &delivery);
    void handleFailure(Delivery delivery, const QDBusMessage &error, quint64 owner);
    void deliverWaiting();
    void forgetClickable();

    DBusService m_daemon;

    std::deque<Delivery> m_queue;   ///< To be delivered, in this order.
    std::deque<Delivery> m_waiting; ///< There was no daemon to show them.
    int m_asking = 0;               ///< Calls that ask the daemon what it can do.
    int m_calls = 0;                ///< Notifications that the daemon has not answered yet.
    quint64 m_owner = 0;            ///< Counts owners, to notice a change during a call.
    bool m_hasDaemon = false;       ///< An owner has appeared since the start and is still there.

    QSet<uint> m_clickable; ///< The daemon's numbers of what it shows.
    QString m_token;        ///< Of the click that is about to be told.
};

} // namespace tarne
