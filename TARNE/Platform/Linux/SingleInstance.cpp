#include "SingleInstance.h"

#include "DesktopLogging.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDir>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarne {

using namespace Qt::StringLiterals;

namespace {

constexpr int busTimeoutMilliseconds = 2'000;
constexpr QLatin1StringView name{"com.tarne.app"};
constexpr QLatin1StringView path{"/com/tarne/app"};
constexpr QLatin1StringView interface { "org.freedesktop.Application" };

/// The interface by which desktops and further processes reach the running program.
class ApplicationAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    ApplicationAdaptor(SingleInstance *parent, SingleInstance::Activated activated)
        : QDBusAbstractAdaptor(parent), m_activated(std::move(activated)) {}

public Q_SLOTS:
    void Activate(const QVariantMap &platformData) { show(platformData); }
    /// There are no documents to open: the window is shown, as on any other start.
    void Open(const QStringList &, const QVariantMap &platformData) { show(platformData); }
    void ActivateAction(const QString &, const QVariantList &, const QVariantMap &platformData) {
        show(platformData);
    }

private:
    void show(const QVariantMap &platformData) {
        if (m_activated)
            m_activated(platformData.value(u"activation-token"_s).toString());
    }

    SingleInstance::Activated m_activated;
};

/// Only we can write into it, so nobody else can hold the lock.
bool isOwnFolder(const QByteArray &folder) {
    struct stat status {};
    return ::lstat(folder.constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

/// The runtime folder, or one of our own among the temporary files; empty when neither is safe.
QByteArray lockFolder() {
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    if (runtime.startsWith('/') && isOwnFolder(runtime))
        return runtime;
    const QByteArray own =
        QFile::encodeName(QDir::tempPath()) + "/com.tarne.app-" + QByteArray::number(::geteuid());
    ::mkdir(own.constData(), S_IRWXU);
    return isOwnFolder(own) ? own : QByteArray();
}

} // namespace

SingleInstance::SingleInstance(QDBusConnection sessionBus, Activated activated)
    : m_bus(std::move(sessionBus)), m_activated(std::move(activated)) {
    new ApplicationAdaptor(this, m_activated);
    m_isFirst = claimName() || (!m_usesBus && claimLock());
}

SingleInstance::~SingleInstance() {
    if (m_usesBus && m_isFirst)
        m_bus.unregisterObject(path);
}

bool SingleInstance::claimName() {
    // The object stands before the name does: whoever finds the name finds the object.
    if (!m_bus.isConnected() || !m_bus.registerObject(path, this))
        return false;
    constexpr uint doNotQueue = 4;
    constexpr uint primaryOwner = 1;
    auto request = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s,
                                                  u"org.freedesktop.DBus"_s, u"RequestName"_s);
    request << QString(name) << doNotQueue;
    const QDBusMessage reply = m_bus.call(request, QDBus::Block, busTimeoutMilliseconds);
    m_usesBus = reply.type() == QDBusMessage::ReplyMessage && reply.signature() == "u"_L1;
    const bool claimed = m_usesBus && reply.arguments().constFirst().toUInt() == primaryOwner;
    if (!claimed)
        m_bus.unregisterObject(path);
    return claimed;
}

bool SingleInstance::claimLock() {
    const QByteArray folder = lockFolder();
    const QByteArray file = folder + "/com.tarne.app.lock";
    const int descriptor = folder.isEmpty()
                               ? -1
                               : ::open(file.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW,
                                        S_IRUSR | S_IWUSR);
    if (descriptor < 0) {
        qCWarning(desktopLog, "no lock against a second process: %s", std::strerror(errno));
        return true;
    }
    m_lock.open(descriptor, QIODevice::ReadWrite, QFileDevice::AutoCloseHandle);
    return ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

void SingleInstance::activateFirst() {
    if (!m_usesBus)
        return;
    const auto activate = QDBusMessage::createMethodCall(name, path, interface, u"Activate"_s);
    QVariantMap platformData;
    if (const auto token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN"); !token.isEmpty())
        platformData[u"activation-token"_s] = token;
    if (const auto id = qEnvironmentVariable("DESKTOP_STARTUP_ID"); !id.isEmpty())
        platformData[u"desktop-startup-id"_s] = id;
    auto message = activate;
    message << platformData;
    m_bus.send(message);
    // An answer of the bus daemon itself proves that it has taken what was sent before.
    const auto ping = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s,
                                                     u"org.freedesktop.DBus"_s, u"GetId"_s);
    m_bus.call(ping, QDBus::Block, busTimeoutMilliseconds);
}

} // namespace tarne

#include "SingleInstance.moc"
