#include "DBusService.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QPointer>

#include <limits>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {
/// A service that hangs would hold a call with the bus's own time-out for 25 s.
constexpr int timeoutMilliseconds = 2'000;
} // namespace

DBusService::DBusService(QDBusConnection bus, DBusAddress address)
    : m_bus(std::move(bus)),
      m_address(std::move(address)),
      m_watcher(m_address.service, m_bus, QDBusServiceWatcher::WatchForOwnerChange) {
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &oldOwner, const QString &newOwner) {
                if (!oldOwner.isEmpty())
                    Q_EMIT vanished();
                if (!newOwner.isEmpty())
                    Q_EMIT appeared();
            });
}

void DBusService::call(const QString &method, const QVariantList &arguments,
                       const QObject *receiver, Reply reply, Patience patience) {
    if (!m_bus.isConnected()) {
        // A pending call of a connection that never stood is finished and never says so.
        const auto answer = [guard = QPointer(receiver), reply = std::move(reply)] {
            if (guard)
                reply(QDBusMessage::createError(QDBusError::Disconnected, u"no bus"_s));
        };
        QMetaObject::invokeMethod(this, answer, Qt::QueuedConnection);
        return;
    }
    auto message = QDBusMessage::createMethodCall(m_address.service, m_address.path,
                                                  m_address.interface, method);
    message.setArguments(arguments);
    const int timeout =
        patience == Patience::TwoSeconds ? timeoutMilliseconds : std::numeric_limits<int>::max();
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message, timeout), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [guard = QPointer(receiver), reply = std::move(reply)](QDBusPendingCallWatcher *done) {
                done->deleteLater();
                if (guard)
                    reply(done->reply());
            });
}

void DBusService::tell(const QString &method, const QVariantList &arguments) {
    auto message = QDBusMessage::createMethodCall(m_address.service, m_address.path,
                                                  m_address.interface, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    if (m_bus.isConnected())
        m_bus.send(message);
}

} // namespace tarne
