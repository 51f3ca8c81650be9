#include "DesktopQuiet.h"

#include "NotificationBanners.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

const QString daemonName = u"org.freedesktop.Notifications"_s;

/// Each question is asked once, and an inhibition whose answer is not awaited cannot be undone.
constexpr auto patience = DBusService::Patience::Endless;

} // namespace

DesktopQuiet::DesktopQuiet(const QDBusConnection &sessionBus, UserDefaults &defaults)
    : m_defaults(defaults),
      m_daemon(sessionBus, {daemonName, u"/org/freedesktop/Notifications"_s, daemonName}),
      m_names(sessionBus,
              {u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s}) {
    if (NotificationBanners::isOwed(m_defaults))
        m_banners = NotificationBanners::find(m_defaults);
    if (m_banners)
        m_banners->giveBack();
    connect(&m_daemon, &DBusService::appeared, this, &DesktopQuiet::askDaemon);
    connect(&m_daemon, &DBusService::vanished, this, &DesktopQuiet::forgetDaemon);
    // A call of the daemon itself would start it.
    const auto handleAnswer = [this](const QDBusMessage &reply) {
        if (reply.type() == QDBusMessage::ReplyMessage && reply.arguments().value(0).toBool())
            askDaemon();
    };
    m_names.call(u"NameHasOwner"_s, {daemonName}, this, handleAnswer, patience);
}

DesktopQuiet::~DesktopQuiet() {
    setQuiet(false);
}

void DesktopQuiet::askDaemon() {
    const auto handleAnswer = [this, owner = m_owner](const QDBusMessage &reply) {
        if (owner != m_owner || reply.signature() != "as"_L1)
            return;
        if (reply.arguments().constFirst().toStringList().contains("inhibitions"_L1))
            setWay(Way::Inhibition);
        else
            askWhoItIs(owner);
    };
    m_daemon.call(u"GetCapabilities"_s, {}, this, handleAnswer, patience);
}

void DesktopQuiet::askWhoItIs(quint64 owner) {
    const auto handleAnswer = [this, owner](const QDBusMessage &reply) {
        if (owner != m_owner || reply.arguments().value(0).toString() != "gnome-shell"_L1)
            return;
        if (!m_banners)
            m_banners = NotificationBanners::find(m_defaults);
        if (m_banners)
            setWay(Way::Banners);
    };
    m_daemon.call(u"GetServerInformation"_s, {}, this, handleAnswer, patience);
}

void DesktopQuiet::forgetDaemon() {
    ++m_owner;
    m_isAsking = false;
    m_cookie.reset(); // It ended with the daemon.
    if (m_banners)
        m_banners->giveBack();
    setWay(Way::None);
}

void DesktopQuiet::setWay(Way way) {
    if (std::exchange(m_way, way) == way)
        return;
    apply();
    Q_EMIT possibleChanged(isPossible());
}

void DesktopQuiet::setQuiet(bool quiet) {
    if (std::exchange(m_isWanted, quiet) != quiet)
        apply();
}

void DesktopQuiet::apply() {
    if (m_way == Way::Banners && m_isWanted)
        m_banners->hide();
    else if (m_way == Way::Banners)
        m_banners->giveBack();
    else if (m_way == Way::Inhibition && m_isWanted && !m_cookie && !m_isAsking)
        inhibit();
    else if (m_way == Way::Inhibition && !m_isWanted && m_cookie)
        m_daemon.tell(u"UnInhibit"_s, {*std::exchange(m_cookie, std::nullopt)});
}

void DesktopQuiet::inhibit() {
    m_isAsking = true;
    const auto handleAnswer = [this, owner = m_owner](const QDBusMessage &reply) {
        if (owner != m_owner)
            return;
        m_isAsking = false;
        if (reply.signature() != "u"_L1)
            return;
        m_cookie = reply.arguments().constFirst().toUInt();
        apply(); // The wish may be another one by now.
    };
    m_daemon.call(u"Inhibit"_s, {u"com.tarne.app"_s, u"A focus session runs"_s, QVariantMap()},
                  this, handleAnswer, patience);
}

} // namespace tarne
