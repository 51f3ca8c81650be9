#include "PrivateBus.h"

#include "EventLoop.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QFile>
#include <QUuid>

#include <gtest/gtest.h>

#include <csignal>

using namespace Qt::StringLiterals;

namespace tarne::test {

namespace {

constexpr int processTimeout = 20'000;
constexpr QLatin1StringView mockInterface{"org.freedesktop.DBus.Mock"};

void endProcess(QProcess &process) {
    if (process.state() == QProcess::NotRunning)
        return;
    process.kill();
    process.waitForFinished(processTimeout);
}

void signalProcess(const QProcess &process, int signal) {
    ASSERT_GT(process.processId(), 0);
    ::kill(static_cast<pid_t>(process.processId()), signal);
}

} // namespace

PrivateBus::PrivateBus(const QString &services, const QStringList &environment) {
    QFile config(m_folder.filePath(u"bus.conf"_s));
    EXPECT_TRUE(config.open(QIODevice::WriteOnly));
    const QString folder =
        services.isEmpty() ? QString() : u"<servicedir>%1</servicedir>"_s.arg(services);
    config.write("<busconfig><type>session</type><listen>unix:path=" +
                 QFile::encodeName(m_folder.filePath(u"bus"_s)) + "</listen><auth>EXTERNAL</auth>" +
                 QFile::encodeName(folder) +
                 "<include ignore_missing=\"yes\">limits.conf</include>"
                 "<policy context=\"default\">"
                 "<allow send_destination=\"*\" eavesdrop=\"true\"/>"
                 "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
    config.close();
    QProcessEnvironment all = QProcessEnvironment::systemEnvironment();
    for (const QString &variable : environment)
        all.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
    m_daemon.setProcessEnvironment(all);
    m_daemon.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    start();
}

void PrivateBus::start() {
    m_daemon.start(u"/usr/bin/dbus-daemon"_s,
                   {u"--nofork"_s, u"--print-address=1"_s,
                    u"--config-file="_s + m_folder.filePath(u"bus.conf"_s)});
    while (!m_daemon.canReadLine() && m_daemon.waitForReadyRead(processTimeout)) {
    }
    m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    EXPECT_FALSE(m_address.isEmpty());
}

void PrivateBus::startAgain() {
    QFile::remove(m_folder.filePath(u"bus"_s));
    start();
}

std::vector<pid_t> PrivateBus::startedProcesses() const {
    const auto childrenOf = [](qint64 process) {
        QFile children(u"/proc/%1/task/%1/children"_s.arg(process));
        return children.open(QIODevice::ReadOnly) ? children.readAll().simplified() : QByteArray();
    };
    std::vector<pid_t> processes;
    // The daemon starts a service by a process in between, which ends at once or waits for it.
    for (const QByteArray &child : childrenOf(m_daemon.processId()).split(' ')) {
        const int between = child.toInt();
        if (between <= 0)
            continue;
        for (const QByteArray &service : childrenOf(between).split(' ')) {
            if (service.toInt() > 0)
                processes.push_back(service.toInt());
        }
    }
    return processes;
}

PrivateBus::~PrivateBus() {
    for (const QString &name : std::as_const(m_connections))
        QDBusConnection::disconnectFromBus(name);
    stop();
}

QDBusConnection PrivateBus::connect() {
    m_connections += QUuid::createUuid().toString();
    return QDBusConnection::connectToBus(m_address, m_connections.constLast());
}

void PrivateBus::stop() {
    endProcess(m_daemon);
}
void PrivateBus::hang() {
    signalProcess(m_daemon, SIGSTOP);
}
void PrivateBus::resume() {
    signalProcess(m_daemon, SIGCONT);
}

void PrivateBus::reload() {
    const QDBusMessage reply = connect().call(
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"ReloadConfig"_s));
    EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << qPrintable(reply.errorMessage());
}

void PrivateBus::limitStarts(std::chrono::milliseconds limit) {
    QFile limits(m_folder.filePath(u"limits.conf"_s));
    EXPECT_TRUE(limits.open(QIODevice::WriteOnly));
    limits.write("<busconfig><limit name=\"service_start_timeout\">" +
                 QByteArray::number(qint64(limit.count())) + "</limit></busconfig>");
    limits.close();
    reload();
}

QDBusConnection noBus() {
    return QDBusConnection(u"no bus"_s);
}

MockService::MockService(PrivateBus &bus, QString name, QString path, QString interface)
    : m_bus(bus),
      m_connection(bus.connect()),
      m_name(std::move(name)),
      m_path(std::move(path)),
      m_interface(std::move(interface)) {}

std::unique_ptr<MockService> MockService::fromTemplate(PrivateBus &bus, const QString &templateName,
                                                       const QString &name,
                                                       const QString &parameters) {
    std::unique_ptr<MockService> mock(
        new MockService(bus, name, u"/"_s + QString(name).replace(u'.', u'/'), name));
    QStringList arguments{u"--template"_s, templateName};
    if (!parameters.isEmpty())
        arguments += {u"--parameters"_s, parameters};
    mock->start(arguments);
    return mock;
}

std::unique_ptr<MockService> MockService::bare(PrivateBus &bus, const QString &name,
                                               const QString &path, const QString &interface) {
    std::unique_ptr<MockService> mock(new MockService(bus, name, path, interface));
    mock->start({u"--session"_s, name, path, interface});
    return mock;
}

std::unique_ptr<MockService> MockService::startedBy(PrivateBus &bus, const QString &name) {
    std::unique_ptr<MockService> mock(
        new MockService(bus, name, u"/"_s + QString(name).replace(u'.', u'/'), name));
    mock->awaitName();
    return mock;
}

MockService::~MockService() {
    kill();
}

void MockService::start(const QStringList &arguments) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, m_bus.address());
    environment.insert(u"DBUS_SYSTEM_BUS_ADDRESS"_s, m_bus.address());
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.setStandardOutputFile(QProcess::nullDevice());
    // Debian's own interpreter: its packages hold the mock.
    m_process.start(u"/usr/bin/python3"_s, QStringList{u"-m"_s, u"dbusmock"_s} + arguments);
    awaitName();
}

void MockService::awaitName() {
    EXPECT_TRUE(serveUntil([&] {
        return m_connection.interface()->isServiceRegistered(m_name).value();
    })) << qPrintable(m_name);
}

QVariantList MockService::callMock(const QString &method, const QVariantList &arguments) {
    auto message = QDBusMessage::createMethodCall(m_name, m_path, mockInterface, method);
    message.setArguments(arguments);
    const QDBusMessage reply = m_connection.call(message, QDBus::Block, processTimeout);
    EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << qPrintable(reply.errorMessage());
    return reply.arguments();
}

void MockService::addMethod(const QString &method, const QString &in, const QString &out,
                            const QString &code) {
    callMock(u"AddMethod"_s, {m_interface, method, in, out, code});
}

QList<QVariantList> MockService::calls(const QString &method) {
    QList<QVariantList> calls;
    const QVariantList reply = callMock(u"GetMethodCalls"_s, {method});
    if (reply.isEmpty())
        return calls;
    const auto entries = reply.constFirst().value<QDBusArgument>();
    entries.beginArray();
    while (!entries.atEnd()) {
        qulonglong time = 0;
        QVariantList arguments;
        entries.beginStructure();
        entries >> time >> arguments;
        entries.endStructure();
        calls += arguments;
    }
    entries.endArray();
    return calls;
}

bool MockService::waitForCalls(const QString &method, int count) {
    return serveUntil([&] { return calls(method).size() >= count; });
}

void MockService::emitSignal(const QString &interface, const QString &signal,
                             const QString &signature, const QVariantList &arguments) {
    callMock(u"EmitSignal"_s, {interface, signal, signature, QVariant(arguments)});
}

QVariantList MockService::call(const QString &interface, const QString &method) {
    return m_connection
        .call(QDBusMessage::createMethodCall(m_name, m_path, interface, method), QDBus::Block,
              processTimeout)
        .arguments();
}

void MockService::hang() {
    signalProcess(m_process, SIGSTOP);
}
void MockService::resume() {
    signalProcess(m_process, SIGCONT);
}
void MockService::kill() {
    endProcess(m_process);
}

} // namespace tarne::test
