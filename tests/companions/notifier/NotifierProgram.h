#pragma once

#include "EventLoop.h"
#include "NotifierInterface.h"
#include "PrivateBus.h"
#include "RequestFile.h"

#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusReply>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <memory>

namespace tarne::test {

/// A folder with the notifier's service file, and at first nothing else in it.
class ServiceFolder {
public:
    explicit ServiceFolder(const QString &program = QStringLiteral(TARNE_NOTIFIER)) {
        offer(QStringLiteral("com.tarne.app.Notifier1"), program);
    }
    void offer(const QString &name, const QString &command) {
        QFile file(m_folder.filePath(name + QStringLiteral(".service")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[D-BUS Service]\nName=" + name.toUtf8() + "\nExec=" + command.toUtf8() + "\n");
    }
    QString path() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
};

/// The notifier's program on a bus that starts it, and a caller that has TARNE's name.
class NotifierProgram {
public:
    explicit NotifierProgram(const QString &program = QStringLiteral(TARNE_NOTIFIER))
        : m_services(program) {
        notifier::registerComponents();
    }
    /// The program ends with its bus; its folder goes after that.
    ~NotifierProgram() {
        const pid_t process = processId();
        m_bus.stop();
        EXPECT_TRUE(process == 0 || hasGone(process));
    }
    NotifierProgram(const NotifierProgram &) = delete;
    NotifierProgram &operator=(const NotifierProgram &) = delete;

    QString dataFolder() const { return m_data.path(); }
    QString folder() const { return m_data.filePath(QStringLiteral("com.tarne.app/notifier")); }
    PrivateBus &bus() { return m_bus; }
    /// From now on the bus starts a program for another name too.
    void offer(const QString &name, const QString &command) {
        m_services.offer(name, command);
        m_bus.reload();
    }
    QDBusConnection connection() { return m_caller; }

    /// The caller takes TARNE's name, as every caller of the notifier must.
    void becomeTarne() { EXPECT_TRUE(m_caller.registerService(QStringLiteral("com.tarne.app"))); }
    /// Another connection, after the bus was ended and started again.
    void reconnect() {
        m_caller = m_bus.connect();
        becomeTarne();
    }

    QDBusPendingCall send(const QString &method, const QVariantList &arguments = {}) {
        auto message = QDBusMessage::createMethodCall(notifier::service, notifier::path,
                                                      notifier::interface, method);
        message.setArguments(arguments);
        return m_caller.asyncCall(message);
    }
    QDBusMessage call(const QString &method, const QVariantList &arguments = {}) {
        QDBusPendingCallWatcher watcher(send(method, arguments));
        EXPECT_TRUE(serveUntil([&] { return watcher.isFinished(); }));
        return watcher.reply();
    }
    static QVariantList addition(const QString &identifier, std::optional<DateComponents> trigger,
                                 const QString &body = {}) {
        return {identifier, identifier, body, QVariant::fromValue(notifier::componentsOf(trigger))};
    }
    QDBusMessage add(const QString &identifier, std::optional<DateComponents> trigger,
                     const QString &body = {}) {
        return call(QStringLiteral("Add"), addition(identifier, trigger, body));
    }
    QStringList pending() {
        return call(QStringLiteral("Pending")).arguments().value(0).toStringList();
    }

    bool isRunning() {
        return m_caller.interface()->isServiceRegistered(notifier::service).value();
    }
    bool hasEnded() {
        return serveUntil([&] { return !isRunning(); });
    }
    /// The process that our own bus has started; 0 when there is none.
    pid_t processId() {
        const QDBusReply<uint> id = m_caller.interface()->servicePid(notifier::service);
        const auto process = static_cast<pid_t>(id.isValid() ? id.value() : 0);
        const QString program = QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(process));
        return program == QStringLiteral(TARNE_NOTIFIER) ? process : 0;
    }
    static bool hasGone(pid_t process) {
        return serveUntil([&] { return !QDir(QStringLiteral("/proc/%1").arg(process)).exists(); });
    }
    void signal(int number) {
        const pid_t process = processId();
        ASSERT_GT(process, 0);
        ASSERT_EQ(::kill(process, number), 0);
    }
    void kill() {
        signal(SIGKILL);
        EXPECT_TRUE(hasEnded());
    }
    /// Kills the program wherever it is between its start and its end, if it is anywhere.
    void killStarted() {
        for (const pid_t process : m_bus.startedProcesses()) {
            ::kill(process, SIGKILL);
            EXPECT_TRUE(hasGone(process));
        }
    }
    /// Whether its file holds nothing any more that has to be shown at once.
    bool hasShownAll() {
        const auto values = SQLiteFile(notifier::RequestFile::filesIn(folder()).file(),
                                       SQLiteFile::Access::ReadOnly)
                                .load();
        return std::none_of(values.keyBegin(), values.keyEnd(), [](const QString &identifier) {
            return identifier.startsWith(QStringLiteral("once-"));
        });
    }

private:
    QTemporaryDir m_data;
    ServiceFolder m_services;
    PrivateBus m_bus{m_services.path(), {QStringLiteral("XDG_DATA_HOME=") + m_data.path()}};
    QDBusConnection m_caller = m_bus.connect();
};

} // namespace tarne::test
