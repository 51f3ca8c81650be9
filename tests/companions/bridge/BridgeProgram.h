#pragma once

#include "NativeMessages.h"

#include <SQLiteCpp/Database.h>

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <vector>

namespace tarne::test {

inline constexpr int patience = 20'000;

/// The bridge as a browser starts it.
class RunningBridge {
public:
    explicit RunningBridge(const QProcessEnvironment &environment) {
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        // A browser tells its manifest and its extension.
        m_process.start(QStringLiteral(TARNE_BRIDGE), {QStringLiteral("/etc/manifest.json"),
                                                       QStringLiteral("companion@tarne.app")});
        EXPECT_TRUE(m_process.waitForStarted());
    }
    ~RunningBridge() {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }
    RunningBridge(const RunningBridge &) = delete;
    RunningBridge &operator=(const RunningBridge &) = delete;

    void say(const QByteArray &message) {
        m_process.write(QByteArray::fromStdString(
            frameOf({message.constData(), static_cast<std::size_t>(message.size())})));
    }
    void sayBytes(const QByteArray &bytes) { m_process.write(bytes); }
    void greet() { say(R"({"v":1,"type":"hello","browser":"test","version":"1"})"); }

    /// The next message; empty when there is none within the time.
    QJsonObject next(std::chrono::milliseconds within = std::chrono::milliseconds(patience)) {
        QElapsedTimer timer;
        timer.start();
        for (;;) {
            if (const auto message = m_reader.next())
                return QJsonDocument::fromJson(QByteArray::fromStdString(*message)).object();
            const auto left = within - std::chrono::milliseconds(timer.elapsed());
            if (left.count() <= 0 || !m_process.waitForReadyRead(static_cast<int>(left.count())))
                return {};
            const QByteArray bytes = m_process.readAllStandardOutput();
            m_reader.add({bytes.constData(), static_cast<std::size_t>(bytes.size())});
        }
    }

    void kill() {
        m_process.kill();
        EXPECT_TRUE(m_process.waitForFinished(patience));
    }

    /// Its status; -1 when it does not end.
    int end() {
        m_process.closeWriteChannel();
        return waitForEnd();
    }
    int waitForEnd() {
        const bool isOver =
            m_process.state() == QProcess::NotRunning || m_process.waitForFinished(patience);
        return isOver && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

    /// How often it was woken so far.
    int wakes() const {
        QFile status(QStringLiteral("/proc/%1/status").arg(m_process.processId()));
        EXPECT_TRUE(status.open(QIODevice::ReadOnly));
        for (const QByteArray &line : status.readAll().split('\n')) {
            if (line.startsWith("voluntary_ctxt_switches:"))
                return line.mid(line.indexOf(':') + 1).trimmed().toInt();
        }
        return -1;
    }

private:
    QProcess m_process;
    FrameReader m_reader;
};

/// A home with a bridge in it; TARNE and its server are started when the test says so.
class ABridge : public testing::Test {
protected:
    ABridge() {
        m_environment = QProcessEnvironment::systemEnvironment();
        m_environment.insert(QStringLiteral("XDG_DATA_HOME"),
                             m_home.filePath(QStringLiteral("data")));
        m_environment.insert(QStringLiteral("XDG_RUNTIME_DIR"),
                             m_home.filePath(QStringLiteral("run")));
        m_environment.remove(QStringLiteral("GEMINI_API_KEY"));
        m_environment.remove(QStringLiteral("PORT"));
        QDir().mkdir(m_home.filePath(QStringLiteral("run")));
    }
    ~ABridge() override {
        for (auto *const process : {m_tarne.get(), m_server.get()}) {
            if (process != nullptr)
                end(*process);
        }
    }

    /// The bridge, and its first two messages taken.
    void startBridge(const QString &session, const QString &server = QStringLiteral("absent")) {
        bridge.emplace(m_environment);
        bridge->greet();
        lastSession = bridge->next();
        EXPECT_EQ(lastSession[u"state"].toString().toStdString(), session.toStdString());
        EXPECT_EQ(bridge->next()[u"state"].toString().toStdString(), server.toStdString());
    }

    void startTarne(std::chrono::milliseconds phase = {}) {
        m_tarne = std::make_unique<QProcess>();
        m_tarne->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_tarne->start(QStringLiteral(TARNE_SESSION_PUBLISHER),
                       {m_home.filePath(QStringLiteral("data/com.tarne.app")),
                        QString::number(phase.count())});
        EXPECT_TRUE(m_tarne->waitForReadyRead(patience));
    }
    void tellTarne(const QByteArray &line) {
        m_tarne->write(line + '\n');
        EXPECT_TRUE(m_tarne->waitForBytesWritten());
    }
    void killTarne() { killed(*m_tarne); }
    void quitTarne() { end(*m_tarne); }

    void startServer(int port, const QString &key = {}) {
        m_server = std::make_unique<QProcess>();
        QProcessEnvironment environment = m_environment;
        if (!key.isEmpty())
            environment.insert(QStringLiteral("GEMINI_API_KEY"), key);
        m_server->setProcessEnvironment(environment);
        m_server->start(QStringLiteral(TARNE_CLASSIFICATION_SERVER), {QString::number(port)});
        EXPECT_TRUE(m_server->waitForReadyRead(patience));
    }
    void terminateServer() { end(*m_server); }
    void killServer() { killed(*m_server); }

    /// Waits until the bridge tells this of the session, and passes over an end that has moved.
    void expectSession(const QString &state, std::chrono::milliseconds within) {
        QElapsedTimer timer;
        timer.start();
        QJsonObject message = bridge->next();
        while (message[u"state"] == lastSession[u"state"] && !message.isEmpty())
            message = bridge->next();
        EXPECT_EQ(message[u"type"].toString().toStdString(), "session");
        EXPECT_EQ(message[u"state"].toString().toStdString(), state.toStdString());
        EXPECT_LE(timer.elapsed(), within.count());
        lastSession = message;
    }
    /// Whatever is told meanwhile, the session goes on.
    void expectSessionToGoOn(std::chrono::milliseconds time) {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < time.count()) {
            const QJsonObject message =
                bridge->next(time - std::chrono::milliseconds(timer.elapsed()));
            if (message.isEmpty())
                continue;
            EXPECT_EQ(message[u"state"].toString().toStdString(), "active");
            EXPECT_EQ(message[u"id"], lastSession[u"id"]);
        }
    }
    QJsonObject answerTo(const QByteArray &question) {
        bridge->say(question);
        return bridge->next();
    }

    static QByteArray question(const QByteArray &op, const QByteArray &title = "A film") {
        return R"({"v":1,"id":7,"op":")" + op +
               R"(","page":{"origin":"https://example.org","path":"/watch","title":")" + title +
               R"("}})";
    }
    /// What TARNE has published last, read beside it; and SQLite's own verdict on the file.
    double lastUpdate() const {
        return store()
            .execAndGet("SELECT value FROM defaults WHERE key = 'LastUpdate'")
            .getDouble();
    }
    bool isStoreSound() const {
        return store().execAndGet("PRAGMA integrity_check").getString() == "ok";
    }
    QString dataFolder() const { return m_home.filePath(QStringLiteral("data/com.tarne.app")); }

    std::optional<RunningBridge> bridge;
    QJsonObject lastSession;
    QProcessEnvironment m_environment;

private:
    SQLite::Database store() const {
        return {(dataFolder() + QStringLiteral("/defaults.sqlite")).toStdString(),
                SQLite::OPEN_READONLY, 1000};
    }
    static void end(QProcess &process) {
        process.closeWriteChannel();
        if (process.processId() != 0)
            process.terminate();
        process.waitForFinished(patience);
    }
    static void killed(QProcess &process) {
        process.kill();
        process.waitForFinished(patience);
    }

    QTemporaryDir m_home;
    std::unique_ptr<QProcess> m_tarne;
    std::unique_ptr<QProcess> m_server;
};

} // namespace tarne::test
