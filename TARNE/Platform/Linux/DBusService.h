#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>

#include <functional>

namespace tarne {

/// Where an interface is found on a bus.
struct DBusAddress {
    QString service;
    QString path;
    QString interface;
};

/// One service on a bus, called without ever waiting for it.
///
/// The owner is followed: a service that goes and comes back is called again without further ado.
/// Nothing here fails loudly; a missing bus, a missing service and one that hangs for longer than
/// it is waited for are error replies. Main thread only.
class DBusService final : public QObject {
    Q_OBJECT

public:
    using Reply = std::function<void(const QDBusMessage &reply)>;

    DBusService(QDBusConnection bus, DBusAddress address);

    [[nodiscard]] bool isBusConnected() const { return m_bus.isConnected(); }

    /// How long an answer is waited for. A service may take seconds to start, so a call whose late
    /// answer would be missed is not to be given up.
    enum class Patience {
        TwoSeconds, ///< A service that hangs is an error.
        Endless,    ///< The error comes when the service, its start or the bus has ended.
    };

    /// Calls a method, starting the service if the bus knows how to. `reply` gets the answer or the
    /// error; it is dropped when this object or `receiver` is gone first.
    void call(const QString &method, const QVariantList &arguments, const QObject *receiver,
              Reply reply, Patience patience = Patience::TwoSeconds);

    /// Calls a method of a service that runs already and does not wait for any answer.
    void tell(const QString &method, const QVariantList &arguments);

Q_SIGNALS:
    void appeared(); ///< The service has got an owner, for the first time or anew.
    void vanished(); ///< The service has lost its owner.

private:
    QDBusConnection m_bus;
    DBusAddress m_address;
    QDBusServiceWatcher m_watcher;
};

} // namespace tarne
