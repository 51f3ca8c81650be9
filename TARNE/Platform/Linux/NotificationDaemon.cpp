#include "NotificationDaemon.h"

#include "DesktopLog.h"

#include <QDBusArgument>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

const DBusAddress daemonAddress{u"org.freedesktop.Notifications"_s,
                                u"/org/freedesktop/Notifications"_s,
                                u"org.freedesktop.Notifications"_s};

/// A daemon that dies of a notification must not be fed with it for ever.
constexpr int maximumAttempts = 3;
/// The bus lets a program have a limited number of calls open at a time.
constexpr int maximumCalls = 16;

/// What the bus answers, or the service manager that starts programs for it.
bool meansNoDaemon(const QString &errorName) {
    return errorName == "org.freedesktop.DBus.Error.ServiceUnknown"_L1 ||
           errorName == "org.freedesktop.DBus.Error.NameHasNoOwner"_L1 ||
           errorName == "org.freedesktop.DBus.Error.TimedOut"_L1 ||
           errorName.startsWith("org.freedesktop.DBus.Error.Spawn."_L1) ||
           errorName.startsWith("org.freedesktop.systemd1."_L1);
}

} // namespace

QString plainNotificationText(const QString &text) {
    QString plain = text;
    for (qsizetype i = 0; i < plain.size(); ++i) {
        const QChar c = plain.at(i);
        if (c.isHighSurrogate() && i + 1 < plain.size() && plain.at(i + 1).isLowSurrogate()) {
            ++i;
            continue;
        }
        const bool isControl = c.category() == QChar::Other_Control && c != u'\n' && c != u'\t';
        if (c.isSurrogate() || isControl)
            plain[i] = QChar(QChar::ReplacementCharacter);
    }
    return plain;
}

NotificationDaemon::NotificationDaemon(QDBusConnection sessionBus)
    : m_daemon(sessionBus, daemonAddress) {
    connect(&m_daemon, &DBusService::vanished, this, [this] {
        ++m_owner;
        m_hasDaemon = false;
        forgetClickable();
    });
    connect(&m_daemon, &DBusService::appeared, this, [this] {
        m_hasDaemon = true;
        deliverWaiting();
    });
    // The bus's library ends the program that wants to hear something of a bus that is gone.
    if (!sessionBus.isConnected())
        return;
    const auto &[service, path, interface] = daemonAddress;
    sessionBus.connect(service, path, interface, u"ActivationToken"_s, this,
                       SLOT(noteToken(uint, QString)));
    sessionBus.connect(service, path, interface, u"ActionInvoked"_s, this,
                       SLOT(noteAction(uint, QString)));
    sessionBus.connect(service, path, interface, u"NotificationClosed"_s, this,
                       SLOT(noteClosed(uint)));
}

void NotificationDaemon::show(const NotificationRequest &request, Done done) {
    m_queue.push_back({request, std::move(done)});
    askForAbilities();
}

void NotificationDaemon::withdraw(const QStringList &identifiers) {
    const auto isMeant = [&](const Delivery &delivery) {
        return identifiers.contains(delivery.request.identifier);
    };
    std::erase_if(m_queue, isMeant);
    std::erase_if(m_waiting, isMeant);
}

void NotificationDaemon::askForAbilities() {
    if (m_asking + m_calls >= maximumCalls || m_asking >= static_cast<int>(m_queue.size()))
        return;
    ++m_asking;
    // Asked each time: the daemon may be another one than last time. Where it does not say, the
    // body is escaped: a visible "&amp;" is better than text from outside read as markup.
    const auto handleAnswer = [this](const QDBusMessage &reply) {
        --m_asking;
        const bool answered =
            reply.type() == QDBusMessage::ReplyMessage && reply.signature() == "as"_L1;
        const QStringList told =
            answered ? reply.arguments().constFirst().toStringList() : QStringList();
        // An answer may overtake an earlier one on its way from the bus's thread; the notifications
        // keep their order. What it was asked for may have been withdrawn.
        if (m_queue.empty())
            return;
        Delivery next = std::move(m_queue.front());
        m_queue.pop_front();
        notify(std::move(next), {.escapesBody = !answered || told.contains("body-markup"_L1),
                                 .hasActions = told.contains("actions"_L1)});
    };
    // A daemon may take seconds to start, and a notification that is given up is lost.
    m_daemon.call(u"GetCapabilities"_s, {}, this, handleAnswer, DBusService::Patience::Endless);
}

void NotificationDaemon::notify(Delivery delivery, Abilities abilities) {
    ++m_calls;
    ++delivery.attempts;
    const QString body = plainNotificationText(delivery.request.content.body);
    const QVariantMap hints{{u"desktop-entry"_s, u"com.tarne.app"_s},
                            {u"sound-name"_s, u"message-new-instant"_s}};
    const QVariantList arguments{
        u"TARNE"_s, // The program's name.
        0u,         // Replaces no other notification.
        u"com.tarne.app"_s, plainNotificationText(delivery.request.content.title),
        abilities.escapesBody ? body.toHtmlEscaped() : body,
        // Pairs of a key and what a button says; the key "default" is a click on the whole.
        abilities.hasActions ? QStringList{u"default"_s, u"Open"_s, u"open"_s, u"Open"_s}
                             : QStringList(),
        hints,
        -1, // Stays for as long as the daemon likes.
    };
    auto handleAnswer = [this, delivery = std::move(delivery), isClickable = abilities.hasActions,
                         owner = m_owner](const QDBusMessage &reply) {
        --m_calls;
        if (reply.type() == QDBusMessage::ErrorMessage) {
            handleFailure(delivery, reply, owner);
        } else {
            const bool isNumber = reply.signature() == "u"_L1;
            if (isClickable && isNumber && owner == m_owner)
                m_clickable.insert(reply.arguments().constFirst().toUInt());
            finish(delivery);
        }
        askForAbilities();
    };
    m_daemon.call(u"Notify"_s, arguments, this, std::move(handleAnswer),
                  DBusService::Patience::Endless);
    askForAbilities();
}

void NotificationDaemon::finish(const Delivery &delivery) {
    if (delivery.done)
        delivery.done();
}

void NotificationDaemon::handleFailure(Delivery delivery, const QDBusMessage &error,
                                       quint64 owner) {
    if (!m_daemon.isBusConnected())
        return; // The user's session has ended, and nobody has refused it.
    const bool daemonWent = m_owner != owner;
    const bool canWait =
        (meansNoDaemon(error.errorName()) || daemonWent) && delivery.attempts < maximumAttempts;
    if (!canWait) {
        qCWarning(desktopLog, "notification was not taken by the daemon: %s",
                  qPrintable(error.errorName()));
        finish(delivery);
        return;
    }
    if (m_waiting.empty()) // One line for all of them.
        qCWarning(desktopLog, "notification waits for a daemon to show it: %s",
                  qPrintable(error.errorName()));
    if (!daemonWent && !m_hasDaemon)
        --delivery.attempts; // Nobody has got it yet.
    m_waiting.push_back(std::move(delivery));
    if (m_hasDaemon) // Its successor came before the failure.
        deliverWaiting();
}

void NotificationDaemon::deliverWaiting() {
    for (Delivery &delivery : std::exchange(m_waiting, {}))
        m_queue.push_back(std::move(delivery));
    askForAbilities();
}

void NotificationDaemon::noteToken(uint id, const QString &token) {
    if (m_clickable.contains(id))
        m_token = token;
}

void NotificationDaemon::noteAction(uint id, const QString &) {
    if (m_clickable.contains(id))
        Q_EMIT activated(std::exchange(m_token, {}));
}

void NotificationDaemon::noteClosed(uint id) {
    if (m_clickable.remove(id) && m_clickable.isEmpty())
        Q_EMIT clicksEnded();
}

void NotificationDaemon::forgetClickable() {
    if (m_clickable.isEmpty())
        return;
    m_clickable.clear();
    Q_EMIT clicksEnded();
}

} // namespace tarne
