#pragma once

#include "EventLoop.h"
#include "PrivateBus.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

namespace tarne::test {

/// The daemon that keeps the secrets of one home, started and ended like on a desktop.
class GnomeKeyring {
public:
    explicit GnomeKeyring(PrivateBus &bus) : m_bus(bus), m_connection(bus.connect()) {}
    ~GnomeKeyring() { kill(); }

    /// Starts the daemon; with the password it opens the keyring, or makes it.
    void start(bool isUnlocked) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_bus.address());
        environment.insert(QStringLiteral("HOME"), m_home.path());
        environment.insert(QStringLiteral("XDG_DATA_HOME"),
                           m_home.filePath(QStringLiteral("share")));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_home.path());
        m_process.setProcessEnvironment(environment);
        m_process.setStandardErrorFile(QProcess::nullDevice());
        QStringList arguments{QStringLiteral("--foreground"),
                              QStringLiteral("--components=secrets")};
        if (isUnlocked)
            arguments += QStringLiteral("--unlock");
        m_process.start(QStringLiteral("/usr/bin/gnome-keyring-daemon"), arguments);
        m_process.write("password");
        m_process.closeWriteChannel();
        ASSERT_TRUE(serveUntil([this] { return isOnTheBus(); }));
        // It is on the bus before it has read the password.
        if (isUnlocked) {
            ASSERT_TRUE(serveUntil([this] { return isOpen(); }));
        }
    }

    void hang() { ::kill(static_cast<pid_t>(m_process.processId()), SIGSTOP); }
    void resume() { ::kill(static_cast<pid_t>(m_process.processId()), SIGCONT); }

    void kill() {
        if (m_process.state() == QProcess::NotRunning)
            return;
        m_process.kill();
        m_process.waitForFinished();
        EXPECT_TRUE(serveUntil([this] { return !isOnTheBus(); }));
    }

private:
    bool isOnTheBus() {
        return m_connection.interface()
            ->isServiceRegistered(QStringLiteral("org.freedesktop.secrets"))
            .value();
    }
    bool isOpen() {
        auto question = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.secrets"),
            QStringLiteral("/org/freedesktop/secrets/collection/login"),
            QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
        question << QStringLiteral("org.freedesktop.Secret.Collection") << QStringLiteral("Locked");
        const QDBusReply<QVariant> isLocked = m_connection.call(question);
        return isLocked.isValid() && !isLocked.value().toBool();
    }

    PrivateBus &m_bus;
    QDBusConnection m_connection;
    QTemporaryDir m_home;
    QProcess m_process;
};

/// The dialog in which a locked keyring asks for its password; see password_dialog.py.
class PasswordDialog {
public:
    explicit PasswordDialog(PrivateBus &bus) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral("/usr/bin/python3"),
                        {QStringLiteral(TARNE_PASSWORD_DIALOG)});
        auto connection = bus.connect();
        EXPECT_TRUE(serveUntil([&] {
            return connection.interface()
                ->isServiceRegistered(QStringLiteral("org.gnome.keyring.SystemPrompter"))
                .value();
        }));
    }
    ~PasswordDialog() {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }
    PasswordDialog(const PasswordDialog &) = delete;
    PasswordDialog &operator=(const PasswordDialog &) = delete;

    /// Waits until it has come up `times` times in all.
    [[nodiscard]] bool isUp(int times = 1) {
        return serveUntil([&] {
            m_asked += m_process.readAllStandardOutput().count("asked");
            return m_asked >= times;
        });
    }
    int timesUp() {
        m_asked += m_process.readAllStandardOutput().count("asked");
        return m_asked;
    }
    void unlock() { m_process.write("unlock password\n"); }
    void refuse() { m_process.write("refuse\n"); }

private:
    QProcess m_process;
    qsizetype m_asked = 0;
};

} // namespace tarne::test
