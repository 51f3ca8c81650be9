#pragma once

#include <QDBusConnection>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <chrono>
#include <memory>
#include <vector>

namespace tarne::test {

/// A bus daemon of the test's own, on an address of its own.
class PrivateBus {
public:
    /// It starts programs as the files in `services` tell; nothing without such a folder. They get
    /// `environment`, as "NAME=VALUE", on top of the test's.
    explicit PrivateBus(const QString &services = {}, const QStringList &environment = {});
    ~PrivateBus();
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    const QString &address() const { return m_address; }

    /// A new connection, as another program would have one.
    QDBusConnection connect();

    /// Ends the daemon: the bus vanishes under its clients.
    void stop();

    /// Starts another daemon on the same address, once the first has been ended.
    void startAgain();

    /// The processes that the daemon has started and that live.
    std::vector<pid_t> startedProcesses() const;

    /// The daemon stops answering, and goes on.
    void hang();
    void resume();

    /// The daemon looks at the folder of services anew.
    void reload();
    /// From now on a started program has so long to take its name, and then is killed.
    void limitStarts(std::chrono::milliseconds limit);

private:
    void start();

    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
    QStringList m_connections;
};

/// A connection to no bus at all.
QDBusConnection noBus();

/// A service of python3-dbusmock in a process of its own.
class MockService {
public:
    /// One of dbusmock's templates, e.g. "logind", owning `name`.
    static std::unique_ptr<MockService> fromTemplate(PrivateBus &bus, const QString &templateName,
                                                     const QString &name,
                                                     const QString &parameters = {});
    /// An object without methods; add them with `addMethod`.
    static std::unique_ptr<MockService> bare(PrivateBus &bus, const QString &name,
                                             const QString &path, const QString &interface);
    /// A template's service that the bus starts, once it has the name. Its process is the bus's.
    static std::unique_ptr<MockService> startedBy(PrivateBus &bus, const QString &name);

    ~MockService();
    MockService(const MockService &) = delete;
    MockService &operator=(const MockService &) = delete;

    /// `code` is Python that sets `ret`.
    void addMethod(const QString &method, const QString &in, const QString &out,
                   const QString &code);

    /// The calls of a method so far, each with its arguments.
    QList<QVariantList> calls(const QString &method);

    /// Waits for a number of calls of a method; false when there are fewer in the end.
    bool waitForCalls(const QString &method, int count);

    void emitSignal(const QString &interface, const QString &signal, const QString &signature,
                    const QVariantList &arguments);

    /// Any call of a method of this service, with a plain answer.
    QVariantList call(const QString &interface, const QString &method);

    /// The process stops answering, and goes on.
    void hang();
    void resume();

    /// Kills the process.
    void kill();

private:
    MockService(PrivateBus &bus, QString name, QString path, QString interface);
    void start(const QStringList &arguments);
    void awaitName();
    QVariantList callMock(const QString &method, const QVariantList &arguments);

    PrivateBus &m_bus;
    QDBusConnection m_connection;
    QString m_name;
    QString m_path;
    QString m_interface;
    QProcess m_process;
};

} // namespace tarne::test
