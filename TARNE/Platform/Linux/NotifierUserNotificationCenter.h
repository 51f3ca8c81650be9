#pragma once

#include "DBusService.h"
#include "FreedesktopUserNotificationCenter.h"
#include "NotifierInterface.h"

#include <QHash>

#include <chrono>
#include <map>

namespace tarne {

/// Notifications that come even when this process is gone: the requests live in the notifier, a
/// program of its own that the bus starts (companions/notifier).
///
/// A notifier that is not there, or does not answer within `patience`, costs a line on standard
/// error, and the request is kept in this process. An answer that comes late, or a notifier that
/// appears, takes it from there; identifiers are the same, so nothing is shown twice. Calls that a
/// notifier has left unanswered with its end are sent again to its successor, in their order.
/// Completions come on the main thread; they report an error only without a session bus. `clock`
/// must outlive the centre.
class NotifierUserNotificationCenter final : public QObject, public UserNotificationCenter {
    Q_OBJECT

public:
    NotifierUserNotificationCenter(QDBusConnection sessionBus, const Clock &clock,
                                   CurrentCalendar calendar,
                                   std::chrono::milliseconds patience = std::chrono::seconds(2));

    void requestAuthorization(
        std::function<void(bool granted, std::optional<QString> error)> done) override;
    void add(const NotificationRequest &request, Completion done) override;
    void removePendingNotificationRequests(const QStringList &identifiers) override;
    void removeAllPendingNotificationRequests() override;

Q_SIGNALS:
    /// The user has clicked on a notification that this process has shown. Of the notifier's own a
    /// click arrives as an action of the application. The token lets a window come to the front; it
    /// may be empty.
    void activated(const QString &activationToken);

private:
    using Number = quint64; ///< Calls are numbered in their order.

    struct Call {
        QString method;
        QVariantList arguments = {};
        std::optional<NotificationRequest> request = {}; ///< That is added.
        Date made = {};                                  ///< When it was asked for.
        Completion done = {};                            ///< Until it was called.
        bool isKept = false;      ///< This process has the request for the time being.
        bool isWithdrawn = false; ///< A later call has replaced or removed the request.
        int attempts = 0;
    };

    Number post(Call call);
    void send(Number number);
    void takeAnswer(Number number, const QDBusMessage &reply);
    bool sendAgain();
    void accept(const Call &call);
    void keepHere(Call &call, const QString &reason);
    void handOver();
    void lookAfterAccepted();
    void withdraw(const std::function<bool(const QString &identifier)> &isMeant);
    [[nodiscard]] bool isAhead(const NotificationRequest &request, double seconds) const;
    static void complete(Call &call);

    const Clock &m_clock;
    const CurrentCalendar m_calendar;
    const std::chrono::milliseconds m_patience;
    FreedesktopUserNotificationCenter m_here; ///< What this process has to show itself.
    DBusService m_notifier;

    std::map<Number, Call> m_calls; ///< That were not answered yet.
    Number m_lastNumber = 0;
    quint64 m_generation = 0;  ///< Counts how often all open calls were sent again.
    bool m_hasToldWhy = false; ///< Standard error knows that the notifier does not answer.
    /// What the notifier has, as far as its moment was ahead when it was added.
    QHash<QString, NotificationRequest> m_accepted;
};

} // namespace tarne
