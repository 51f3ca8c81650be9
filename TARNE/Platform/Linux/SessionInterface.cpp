#include "SessionInterface.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {

SessionInterface::SessionInterface(QObject *object, QDBusConnection bus, QString path,
                                   Session session)
    : QDBusAbstractAdaptor(object),
      m_bus(std::move(bus)),
      m_path(std::move(path)),
      m_session(std::move(session)),
      m_told(m_session.status()) {}

void SessionInterface::publish() {
    const SessionOnBus now = m_session.status();
    QVariantMap changed;
    if (now.state != m_told.state)
        changed[u"State"_s] = now.state;
    if (now.duration != m_told.duration)
        changed[u"Duration"_s] = now.duration;
    if (now.endsAt != m_told.endsAt)
        changed[u"EndsAt"_s] = now.endsAt;
    m_told = now;
    if (changed.isEmpty() || !m_bus.isConnected())
        return;
    auto signal = QDBusMessage::createSignal(m_path, u"org.freedesktop.DBus.Properties"_s,
                                             u"PropertiesChanged"_s);
    signal << u"com.tarne.app.Session1"_s << changed << QStringList{u"SecondsLeft"_s};
    m_bus.send(signal);
}

void SessionInterface::Pause(const QDBusMessage &call) {
    if (!m_session.pause())
        refuse(call, u"No session is running."_s);
}

void SessionInterface::Resume(const QDBusMessage &call) {
    if (!m_session.resume())
        refuse(call, u"No session is paused."_s);
}

void SessionInterface::Show(const QVariantMap &options) {
    m_session.show(options.value(u"activation-token"_s).toString());
}

void SessionInterface::refuse(const QDBusMessage &call, const QString &reason) {
    call.setDelayedReply(true); // The answer is this one.
    m_bus.send(call.createErrorReply(u"com.tarne.app.Session1.Error.WrongState"_s, reason));
}

} // namespace tarne
