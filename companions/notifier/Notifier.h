#pragma once

#include "Clock.h"
#include "NotificationDaemon.h"
#include "NotificationSchedule.h"
#include "RequestFile.h"

#include <QHash>
#include <QTimer>

#include <optional>
#include <vector>

namespace tarne::notifier {

/// Keeps requests until their moment and shows them then.
///
/// Changes take effect with `commit`: on the disk first, then on the screen. A request leaves the
/// file when the notification daemon has taken it. So a kill in between costs nothing but, in the
/// moment between the two, that a notification is shown again. Main thread only; file and clock
/// must outlive it.
class Notifier final : public QObject {
    Q_OBJECT

public:
    /// Goes on with what the file holds; `review` shows what is due of it.
    Notifier(RequestFile &file, QDBusConnection sessionBus, const Clock &clock,
             CurrentCalendar calendar);

    /// Replaces the request with the same identifier. One whose moment is past is dropped; one
    /// without a moment is shown at once.
    void add(const NotificationRequest &request);
    void remove(const QStringList &identifiers);
    /// Removes all that have a moment.
    void removeAll();

    /// Brings what was changed onto the disk and shows what is due.
    void commit();

    /// The identifiers of what has a moment and was not shown yet.
    [[nodiscard]] QStringList pending() const;

    /// Shows what is due. To be called when a moment has come, and when the clock or the time zone
    /// may have been changed.
    void review() { commit(); }

    /// Nothing waits: neither for a moment, nor for the daemon, the disk or a click.
    [[nodiscard]] bool isIdle() const;

Q_SIGNALS:
    /// When to call `review` next; none when nothing waits for a moment.
    void nextMomentChanged(std::optional<tarne::Date> moment);
    /// The user wants to see TARNE. The token may be empty.
    void activated(const QString &activationToken);
    /// Something ended that had to be waited for.
    void settled();

private:
    /// A request in the daemon's hands.
    struct Delivery {
        quint64 number;
        bool hasMoment;
    };

    void forget(const QString &identifier);
    void deliver(const NotificationRequest &request);
    void finish(const QString &identifier, quint64 number);

    RequestFile &m_file;
    const Clock &m_clock;
    const CurrentCalendar m_calendar;
    NotificationDaemon m_daemon;
    NotificationSchedule m_schedule;
    std::vector<NotificationRequest> m_immediate; ///< Without a moment, to be shown next.
    QHash<QString, Delivery> m_deliveries;
    quint64 m_lastDelivery = 0;
    QTimer m_commitSoon; ///< For what was delivered.
    QTimer m_retry;      ///< While the disk refuses.
};

} // namespace tarne::notifier
