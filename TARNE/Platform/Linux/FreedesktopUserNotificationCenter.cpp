#include "FreedesktopUserNotificationCenter.h"

#include "DesktopLog.h"

#include <QDBusArgument>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne {

namespace {

/// Nothing tells of a changed time zone, so moments are worked out anew this often while something
/// is pending.
constexpr auto reviewInterval = 10s;

/// A daemon that dies of a notification must not be fed with it for ever.
constexpr int maximumAttempts = 3;
constexpr std::size_t maximumWaiting = 64;

bool meansNoDaemon(const QString &errorName) {
    return errorName == "org.freedesktop.DBus.Error.ServiceUnknown"_L1 ||
           errorName == "org.freedesktop.DBus.Error.NameHasNoOwner"_L1 ||
           errorName.startsWith("org.freedesktop.DBus.Error.Spawn."_L1);
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

FreedesktopUserNotificationCenter::FreedesktopUserNotificationCenter(QDBusConnection sessionBus,
                                                                     const Clock &clock,
                                                                     CurrentCalendar calendar)
    : m_daemon(std::move(sessionBus),
               {u"org.freedesktop.Notifications"_s, u"/org/freedesktop/Notifications"_s,
                u"org.freedesktop.Notifications"_s}),
      m_clock(clock),
      m_calendar(std::move(calendar)) {
    m_review.setInterval(reviewInterval);
    connect(&m_review, &QTimer::timeout, this, &FreedesktopUserNotificationCenter::showWhatIsDue);
    connect(&m_alarm, &WallClockAlarm::rang, this,
            &FreedesktopUserNotificationCenter::showWhatIsDue);
    connect(&m_daemon, &DBusService::vanished, this, [this] {
        ++m_owner;
        m_hasDaemon = false;
    });
    connect(&m_daemon, &DBusService::appeared, this, [this] {
        m_hasDaemon = true;
        deliverWaiting();
    });
}

std::optional<QString> FreedesktopUserNotificationCenter::busError() const {
    return m_daemon.isBusConnected() ? std::nullopt : std::optional(u"There is no session bus."_s);
}

void FreedesktopUserNotificationCenter::requestAuthorization(
    std::function<void(bool granted, std::optional<QString> error)> done) {
    const auto answer = [done = std::move(done), error = busError()] { done(!error, error); };
    QMetaObject::invokeMethod(this, answer, Qt::QueuedConnection);
}

void FreedesktopUserNotificationCenter::add(const NotificationRequest &request, Completion done) {
    const auto error = busError();
    if (!error && request.trigger) {
        m_schedule.add(request, m_clock.now(), m_calendar());
        showWhatIsDue();
    } else if (!error) {
        deliver({request.content});
    }
    if (done)
        QMetaObject::invokeMethod(
            this, [done = std::move(done), error] { done(error); }, Qt::QueuedConnection);
}

void FreedesktopUserNotificationCenter::removePendingNotificationRequests(
    const QStringList &identifiers) {
    m_schedule.remove(identifiers);
    showWhatIsDue();
}

void FreedesktopUserNotificationCenter::removeAllPendingNotificationRequests() {
    m_schedule.removeAll();
    showWhatIsDue();
}

void FreedesktopUserNotificationCenter::showWhatIsDue() {
    const Calendar calendar = m_calendar();
    for (const NotificationContent &content : m_schedule.takeDue(m_clock.now(), calendar))
        deliver({content});
    const auto next = m_schedule.nextMoment(calendar);
    if (!next) {
        m_alarm.clear();
        m_review.stop();
        return;
    }
    m_alarm.set(*next);
    if (!m_review.isActive())
        m_review.start();
}

void FreedesktopUserNotificationCenter::deliver(Delivery delivery) {
    ++delivery.attempts;
    m_asking.push_back(std::move(delivery));
    // Asked each time: the daemon may be another one than last time. Where it does not say, the
    // body is escaped: a visible "&amp;" is better than text from outside read as markup.
    m_daemon.call(u"GetCapabilities"_s, {}, this, [this](const QDBusMessage &reply) {
        const bool answered =
            reply.type() == QDBusMessage::ReplyMessage && reply.signature() == "as"_L1;
        const bool escapesBody =
            !answered || reply.arguments().constFirst().toStringList().contains("body-markup"_L1);
        // An answer may overtake an earlier one on its way from the bus's thread; the notifications
        // keep their order.
        Delivery next = std::move(m_asking.front());
        m_asking.pop_front();
        notify(std::move(next), escapesBody);
    });
}

void FreedesktopUserNotificationCenter::notify(Delivery delivery, bool escapesBody) {
    const QString body = plainNotificationText(delivery.content.body);
    const QVariantMap hints{{u"desktop-entry"_s, u"com.tarne.app"_s},
                            {u"sound-name"_s, u"message-new-instant"_s}};
    const QVariantList arguments{
        u"TARNE"_s, // The program's name.
        0u,         // Replaces no other notification.
        u"com.tarne.app"_s,
        plainNotificationText(delivery.content.title),
        escapesBody ? body.toHtmlEscaped() : body,
        QStringList(), // No actions.
        hints,
        -1, // Stays for as long as the daemon likes.
    };
    m_daemon.call(u"Notify"_s, arguments, this,
                  [this, delivery = std::move(delivery), owner = m_owner](const QDBusMessage &r) {
                      if (r.type() == QDBusMessage::ErrorMessage)
                          handleFailure(delivery, r, owner);
                  });
}

void FreedesktopUserNotificationCenter::handleFailure(Delivery delivery, const QDBusMessage &error,
                                                      quint64 owner) {
    const bool daemonWent = m_owner != owner;
    const bool canWait =
        (meansNoDaemon(error.errorName()) || daemonWent) && delivery.attempts < maximumAttempts;
    qCWarning(desktopLog, "notification %s: %s",
              canWait ? "waits for a daemon to show it" : "was not taken by the daemon",
              qPrintable(error.errorName()));
    if (!canWait)
        return;
    if (!daemonWent)
        --delivery.attempts; // Nobody has got it yet.
    m_waiting.push_back(std::move(delivery));
    if (m_waiting.size() > maximumWaiting)
        m_waiting.pop_front();
    if (m_hasDaemon) // Its successor came before the failure.
        deliverWaiting();
}

void FreedesktopUserNotificationCenter::deliverWaiting() {
    for (Delivery &delivery : std::exchange(m_waiting, {}))
        deliver(std::move(delivery));
}

} // namespace tarne
