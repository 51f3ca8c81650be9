#include "SingleInstance.h"

#include <QDBusAbstractAdaptor>
#include <QDBusError>
#include <QDBusMessage>
#include <QDeadlineTimer>

#include <chrono>
#include <thread>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne {

namespace {

/// A program that ends gives its server three seconds, and saves.
constexpr auto longestEnd = 30s;
constexpr int busTimeoutMilliseconds = 2'000;
constexpr QLatin1StringView name{"com.tarne.app"};
constexpr QLatin1StringView interface { "org.freedesktop.Application" };

/// The interface by which desktops and further processes reach the running program.
class ApplicationAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    ApplicationAdaptor(SingleInstance *parent, SingleInstance::Activated activated)
        : QDBusAbstractAdaptor(parent), m_activated(std::move(activated)) {}

public Q_SLOTS:
    void Activate(const QVariantMap &platformData) { perform({}, platformData); }
    /// There are no documents to open: the window is shown, as on any other start.
    void Open(const QStringList &, const QVariantMap &platformData) { perform({}, platformData); }
    void ActivateAction(const QString &action, const QVariantList &,
                        const QVariantMap &platformData) {
        perform(action, platformData);
    }

private:
    void perform(const QString &action, const QVariantMap &platformData) {
        if (m_activated)
            m_activated(action, platformData.value(u"activation-token"_s).toString());
    }

    SingleInstance::Activated m_activated;
};

QDBusMessage busCall(const QString &method) {
    return QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s,
                                          u"org.freedesktop.DBus"_s, method);
}

QDBusMessage requestOfName(uint flags) {
    return busCall(u"RequestName"_s) << QString(name) << flags;
}

/// Asks the owner of the name on this bus to show its window.
void sendActivate(QDBusConnection &bus) {
    QVariantMap platformData;
    if (const auto token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN"); !token.isEmpty())
        platformData[u"activation-token"_s] = token;
    if (const auto id = qEnvironmentVariable("DESKTOP_STARTUP_ID"); !id.isEmpty())
        platformData[u"desktop-startup-id"_s] = id;
    auto message =
        QDBusMessage::createMethodCall(name, SingleInstance::path, interface, u"Activate"_s);
    // The bus itself would start one more program where nobody has the name.
    message.setAutoStartService(false);
    message << platformData;
    bus.send(message);
    // An answer of the bus daemon itself proves that it has taken what was sent before.
    bus.call(busCall(u"GetId"_s), QDBus::Block, busTimeoutMilliseconds);
}

} // namespace

SingleInstance::SingleInstance(Place place, Activated activated)
    : m_place(std::move(place)),
      m_activated(std::move(activated)),
      m_name(claimName()),
      m_isFirst(m_name != Name::Anothers && claimStore()) {
    if (m_isFirst)
        m_place.lock.setAddress(m_name == Name::Ours ? m_place.busAddress : QString());
    else
        releaseName();
}

SingleInstance::~SingleInstance() {
    releaseName();
}

QString SingleInstance::sessionBusAddress() {
    const QString told = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return told.isEmpty() && !runtime.isEmpty() ? u"unix:path="_s + runtime + u"/bus"_s : told;
}

SingleInstance::Name SingleInstance::claimName() {
    new ApplicationAdaptor(this, m_activated);
    QDBusConnection &bus = m_place.sessionBus;
    // The object comes before the name, so that a process that finds the name finds the object.
    if (!bus.isConnected() || !bus.registerObject(path, this))
        return Name::NoBus;
    constexpr uint doNotQueue = 4;
    constexpr uint primaryOwner = 1;
    const QDBusMessage reply =
        bus.call(requestOfName(doNotQueue), QDBus::Block, busTimeoutMilliseconds);
    if (reply.errorName() == QDBusError::errorString(QDBusError::NoReply) && bus.isConnected()) {
        // It will give us the name when it goes on. Where another start of the program is heard
        // before us, the name is ours after that one, which the lock sends away.
        bus.send(requestOfName(0));
        return Name::Ours;
    }
    const bool isAnswer = reply.type() == QDBusMessage::ReplyMessage && reply.signature() == "u"_L1;
    if (isAnswer && reply.arguments().constFirst().toUInt() == primaryOwner)
        return Name::Ours;
    bus.unregisterObject(path);
    return isAnswer ? Name::Anothers : Name::NoBus;
}

void SingleInstance::releaseName() {
    if (m_name != Name::Ours)
        return;
    m_name = Name::NoBus;
    m_place.sessionBus.send(busCall(u"ReleaseName"_s) << QString(name));
    m_place.sessionBus.unregisterObject(path);
}

bool SingleInstance::claimStore() {
    const QDeadlineTimer deadline(longestEnd);
    auto holder = m_place.lock.take();
    while (holder == ProgramLock::Holder::AnotherEnding && !deadline.hasExpired()) {
        std::this_thread::sleep_for(20ms);
        holder = m_place.lock.take();
    }
    return holder == ProgramLock::Holder::Us;
}

void SingleInstance::activateFirst() {
    const QString address = m_place.lock.address();
    // A further connection to a bus that hangs would be waited for without an end.
    const bool isOnOurBus = address == m_place.busAddress && m_place.sessionBus.isConnected();
    if (m_name == Name::Anothers || (isOnOurBus && !address.isEmpty())) {
        sendActivate(m_place.sessionBus);
    } else if (!address.isEmpty()) {
        const auto connection = u"com.tarne.app first"_s;
        QDBusConnection bus = QDBusConnection::connectToBus(address, connection);
        if (bus.isConnected())
            sendActivate(bus);
        QDBusConnection::disconnectFromBus(connection);
    }
}

void SingleInstance::beginEnding() {
    m_place.lock.beginEnding();
    releaseName();
}

} // namespace tarne

#include "SingleInstance.moc"
