#include "NotifierService.h"

#include <QCoreApplication>
#include <QDBusAbstractAdaptor>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QDBusReply>

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace tarne::notifier {

namespace {

// Far above what TARNE asks for, and little enough to be held and shown.
constexpr qsizetype longestIdentifier = 1'000;
constexpr qsizetype longestText = 1'000'000;
/// A bus that is slow refuses nothing. It answers in the end, or is gone.
constexpr int endlessly = std::numeric_limits<int>::max();

QDBusMessage busCall(const QString &method, const QVariantList &arguments) {
    auto message = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s,
                                                  u"org.freedesktop.DBus"_s, method);
    message.setArguments(arguments);
    return message;
}

/// The interface.
class NotifierAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.tarne.app.Notifier1")
    Q_CLASSINFO(
        "D-Bus Introspection",
        "<interface name=\"com.tarne.app.Notifier1\">"
        "<method name=\"Add\">"
        "<arg name=\"id\" type=\"s\" direction=\"in\"/>"
        "<arg name=\"title\" type=\"s\" direction=\"in\"/>"
        "<arg name=\"body\" type=\"s\" direction=\"in\"/>"
        "<arg name=\"components\" type=\"a{si}\" direction=\"in\"/>"
        "</method>"
        "<method name=\"Remove\"><arg name=\"ids\" type=\"as\" direction=\"in\"/></method>"
        "<method name=\"RemoveAll\"/>"
        "<method name=\"Pending\"><arg name=\"ids\" type=\"as\" direction=\"out\"/></method>"
        "</interface>")

public:
    explicit NotifierAdaptor(NotifierService *parent)
        : QDBusAbstractAdaptor(parent), m_service(*parent) {}

public Q_SLOTS:
    void Add(const QString &id, const QString &title, const QString &body,
             const QMap<QString, int> &components, const QDBusMessage &message) {
        if (!isWellFormed(message, "sssa{si}"_L1))
            return;
        const Trigger trigger = triggerOf(components);
        if (id.isEmpty() || id.size() > longestIdentifier)
            m_service.refuse(message, u"an identifier has 1 to 1,000 characters"_s);
        else if (title.size() > longestText || body.size() > longestText)
            m_service.refuse(message, u"a text has up to 1,000,000 characters"_s);
        else if (!trigger.isValid)
            m_service.refuse(message, u"the components name no day and time"_s);
        else
            m_service.receive(message, [request = NotificationRequest{
                                            id, {title, body}, trigger.components}](Notifier &n) {
                n.add(request);
                return QVariantList();
            });
    }
    void Remove(const QStringList &ids, const QDBusMessage &message) {
        if (!isWellFormed(message, "as"_L1))
            return;
        m_service.receive(message, [ids](Notifier &notifier) {
            notifier.remove(ids);
            return QVariantList();
        });
    }
    void RemoveAll(const QDBusMessage &message) {
        if (!isWellFormed(message, {}))
            return;
        m_service.receive(message, [](Notifier &notifier) {
            notifier.removeAll();
            return QVariantList();
        });
    }
    /// The answer is sent later; what is returned here is not.
    QStringList Pending(const QDBusMessage &message) {
        if (isWellFormed(message, {}))
            m_service.receive(message,
                              [](Notifier &notifier) { return QVariantList{notifier.pending()}; });
        return {};
    }

private:
    /// Qt refuses calls whose arguments are of other types, but not those with more of them.
    bool isWellFormed(const QDBusMessage &message, QLatin1StringView signature) {
        if (message.signature() == signature)
            return true;
        m_service.refuse(message, u"the arguments are not those of the method"_s);
        return false;
    }

    NotifierService &m_service;
};

} // namespace

NotifierService::NotifierService(QDBusConnection sessionBus, Notifier &notifier)
    : m_bus(std::move(sessionBus)),
      m_notifier(notifier),
      m_clients(clientService, m_bus, QDBusServiceWatcher::WatchForOwnerChange) {
    registerComponents();
    new NotifierAdaptor(this);
    // The object stands before the name does: a program that finds the name finds the object.
    m_bus.registerObject(path, this);
    connect(&m_clients, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &owner) { m_client = owner; });
}

bool NotifierService::takeName() {
    // Who may call is known before the first call, which the bus delivers together with the name.
    const QDBusReply<QString> client =
        m_bus.call(busCall(u"GetNameOwner"_s, {QString(clientService)}), QDBus::Block, endlessly);
    if (client.isValid())
        m_client = client.value();
    constexpr uint doNotQueue = 4;
    constexpr uint primaryOwner = 1;
    const QDBusReply<uint> taken = m_bus.call(
        busCall(u"RequestName"_s, {QString(service), doNotQueue}), QDBus::Block, endlessly);
    return taken.isValid() && taken.value() == primaryOwner;
}

void NotifierService::giveNameBack() {
    m_bus.call(busCall(u"ReleaseName"_s, {QString(service)}), QDBus::Block, endlessly);
    QCoreApplication::sendPostedEvents();
}

void NotifierService::refuse(const QDBusMessage &message, const QString &reason) {
    message.setDelayedReply(true);
    m_bus.send(message.createErrorReply(QDBusError::InvalidArgs, reason));
}

void NotifierService::receive(const QDBusMessage &message, Operation operation) {
    message.setDelayedReply(true);
    m_calls.push_back({message, std::move(operation), message.service() == m_client});
    // Behind what has come together with it.
    if (!std::exchange(m_isServing, true))
        QMetaObject::invokeMethod(this, &NotifierService::serve, Qt::QueuedConnection);
}

void NotifierService::serve() {
    std::vector<QDBusMessage> answers;
    while (!m_calls.empty() && m_calls.front().isAllowed) {
        const Call call = std::move(m_calls.front());
        m_calls.pop_front();
        answers.push_back(call.message.createReply(call.operation(m_notifier)));
    }
    if (!answers.empty())
        m_notifier.commit();
    for (const QDBusMessage &answer : answers)
        m_bus.send(answer);
    m_isServing = !m_calls.empty();
    if (m_isServing)
        askWhoHasName();
    else
        Q_EMIT answered();
}

/// The news of a name's owner may be slower than its calls.
void NotifierService::askWhoHasName() {
    auto *watcher = new QDBusPendingCallWatcher(
        m_bus.asyncCall(busCall(u"GetNameOwner"_s, {QString(clientService)}), endlessly), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher *finished) {
                finished->deleteLater();
                const QDBusReply<QString> owner = finished->reply();
                m_client = owner.isValid() ? owner.value() : QString();
                Call &first = m_calls.front();
                first.isAllowed = first.message.service() == m_client;
                if (!first.isAllowed) {
                    m_bus.send(first.message.createErrorReply(
                        QDBusError::AccessDenied, u"only the owner of com.tarne.app may call"_s));
                    m_calls.pop_front();
                }
                serve();
            });
}

} // namespace tarne::notifier

#include "NotifierService.moc"
