#pragma once

#include "Notifier.h"
#include "NotifierInterface.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>

#include <deque>
#include <functional>

namespace tarne::notifier {

/// The notifier's name and object on the session bus: docs/notifier.md.
///
/// Calls are answered in their order. What comes together is committed together, and each call is
/// answered after its commit. A call of another program than the owner of `clientService` is
/// refused. Main thread only; the notifier must outlive it.
class NotifierService final : public QObject {
    Q_OBJECT

public:
    NotifierService(QDBusConnection sessionBus, Notifier &notifier);

    /// Takes the name, and waits for the bus as long as it needs. False when another process has
    /// it, or the bus is gone.
    [[nodiscard]] bool takeName();

    /// Gives the name back. Calls that the bus has delivered before have been received afterwards.
    void giveNameBack();

    /// Whether calls wait for their answer.
    [[nodiscard]] bool hasCalls() const { return !m_calls.empty(); }

    /// What a call asks for. It returns the values of the answer.
    using Operation = std::function<QVariantList(Notifier &)>;

    /// For the adaptor: a call that is well formed, and one that is not.
    void receive(const QDBusMessage &message, Operation operation);
    void refuse(const QDBusMessage &message, const QString &reason);

Q_SIGNALS:
    /// All calls were answered.
    void answered();

private:
    struct Call {
        QDBusMessage message;
        Operation operation;
        bool isAllowed; ///< Its sender had the name when it was received.
    };

    void serve();
    void askWhoHasName();

    QDBusConnection m_bus;
    Notifier &m_notifier;
    QDBusServiceWatcher m_clients;
    QString m_client; ///< The bus's own name of the program that may call.
    std::deque<Call> m_calls;
    bool m_isServing = false; ///< A turn of `serve` is due, or waits for the bus.
};

} // namespace tarne::notifier
