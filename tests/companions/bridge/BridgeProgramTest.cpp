// The real bridge beside the real store, as TARNE's controllers write it, and the real server.

#include "EventLoop.h"
#include "NativeMessages.h"
#include "Proof.h"
#include "Rounds.h"

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
#include <random>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

constexpr int patience = 20'000;

/// The bridge as a browser starts it.
class RunningBridge {
public:
    explicit RunningBridge(const QProcessEnvironment &environment) {
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        // A browser tells its manifest and its extension.
        m_process.start(QStringLiteral(TARNE_BRIDGE),
                        {u"/etc/manifest.json"_s, u"companion@tarne.app"_s});
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
            if (left <= 0ms || !m_process.waitForReadyRead(static_cast<int>(left.count())))
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
        QFile status(u"/proc/%1/status"_s.arg(m_process.processId()));
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
        m_environment.insert(u"XDG_DATA_HOME"_s, m_home.filePath(u"data"_s));
        m_environment.insert(u"XDG_RUNTIME_DIR"_s, m_home.filePath(u"run"_s));
        m_environment.remove(u"GEMINI_API_KEY"_s);
        m_environment.remove(u"PORT"_s);
        QDir().mkdir(m_home.filePath(u"run"_s));
    }
    ~ABridge() override {
        for (auto *const process : {m_tarne.get(), m_server.get()}) {
            if (process != nullptr)
                end(*process);
        }
    }

    /// The bridge, and its first two messages taken.
    void startBridge(const QString &session, const QString &server = u"absent"_s) {
        bridge.emplace(m_environment);
        bridge->greet();
        lastSession = bridge->next();
        EXPECT_EQ(lastSession[u"state"].toString().toStdString(), session.toStdString());
        EXPECT_EQ(bridge->next()[u"state"].toString().toStdString(), server.toStdString());
    }

    void startTarne(std::chrono::milliseconds phase = 0ms) {
        m_tarne = std::make_unique<QProcess>();
        m_tarne->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_tarne->start(QStringLiteral(TARNE_SESSION_PUBLISHER),
                       {m_home.filePath(u"data/com.tarne.app"_s), QString::number(phase.count())});
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
            environment.insert(u"GEMINI_API_KEY"_s, key);
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
    QString dataFolder() const { return m_home.filePath(u"data/com.tarne.app"_s); }

    std::optional<RunningBridge> bridge;
    QJsonObject lastSession;
    QProcessEnvironment m_environment;

private:
    SQLite::Database store() const {
        return {(dataFolder() + u"/defaults.sqlite"_s).toStdString(), SQLite::OPEN_READONLY, 1000};
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

TEST_F(ABridge, SaysNothingBeforeItIsGreetedAndEndsWithItsInput) {
    startTarne();
    bridge.emplace(QProcessEnvironment::systemEnvironment());
    EXPECT_EQ(bridge->next(300ms), QJsonObject());
    EXPECT_EQ(bridge->end(), 0);
}

TEST_F(ABridge, RefusesAQuestionBeforeItIsGreeted) {
    bridge.emplace(QProcessEnvironment::systemEnvironment());
    EXPECT_EQ(answerTo(R"({"v":1,"id":8,"op":"state"})")[u"error"], u"bad_request"_s);
}

TEST_F(ABridge, EndsAtALengthThatNoMessageHas) {
    startBridge(u"unavailable"_s);
    bridge->sayBytes("\xff\xff\xff\xff");
    EXPECT_EQ(bridge->waitForEnd(), 0);
}

TEST_F(ABridge, AnswersWhatIsNoMessageAndGoesOn) {
    startBridge(u"unavailable"_s);
    EXPECT_EQ(answerTo("no JSON"),
              (QJsonObject{{u"v"_s, 1}, {u"id"_s, 0}, {u"error"_s, u"bad_request"_s}}));
    EXPECT_EQ(answerTo(QByteArray(500'000, ' '))[u"id"], 0);
    EXPECT_EQ(answerTo(R"({"v":1,"id":9,"op":"key"})")[u"id"], 9);
}

TEST_F(ABridge, TellsOfTheStoreWhenItComesUp) {
    startBridge(u"unavailable"_s);
    startTarne();
    expectSession(u"inactive"_s, 5s);
}

TEST_F(ABridge, TellsASessionsStartPauseResumeAndEnd) {
    startTarne();
    startBridge(u"inactive"_s);
    tellTarne("start 1500 Write the report");
    expectSession(u"active"_s, 2s);
    EXPECT_EQ(lastSession[u"goals"], u"Write the report"_s);
    EXPECT_EQ(lastSession[u"duration"], 1500.0);
    const double now = static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000.0;
    EXPECT_NEAR(lastSession[u"ends"].toDouble(), now + 1500.0, 5.0);
    const QString id = lastSession[u"id"].toString();
    EXPECT_EQ(id.size(), 36);
    tellTarne("pause");
    expectSession(u"inactive"_s, 3s);
    tellTarne("resume");
    expectSession(u"active"_s, 2s);
    EXPECT_EQ(lastSession[u"id"], id);
    tellTarne("end");
    expectSession(u"inactive"_s, 2s);
}

TEST_F(ABridge, TellsASessionOnceWhileTwoWritersAlternate) {
    startTarne(500ms);
    startBridge(u"inactive"_s);
    tellTarne("start 1500 Write the report");
    expectSession(u"active"_s, 2s);
    EXPECT_EQ(bridge->next(10s), QJsonObject());
    tellTarne("end");
    expectSession(u"inactive"_s, 3s);
}

TEST_F(ABridge, GoesOnThroughAMainThreadThatBlocksForFiveSeconds) {
    startTarne();
    startBridge(u"inactive"_s);
    tellTarne("start 1500 Write the report");
    expectSession(u"active"_s, 2s);
    tellTarne("block 5000");
    expectSessionToGoOn(7s);
}

TEST_F(ABridge, SeesAKillWithinASecondAndTheSameSessionAfterIt) {
    startTarne(500ms);
    startBridge(u"inactive"_s);
    tellTarne("start 1500 Write the report");
    expectSession(u"active"_s, 2s);
    const QJsonObject before = lastSession;
    for (int kill = 0; kill < 3; ++kill) {
        killTarne();
        expectSession(u"inactive"_s, 2s);
        EXPECT_EQ(bridge->next(1500ms), QJsonObject());
        // Now both controllers have the session, each under an id of its own.
        startTarne(500ms);
        expectSession(u"active"_s, 2s);
        EXPECT_EQ(lastSession[u"id"], before[u"id"]);
        EXPECT_NEAR(lastSession[u"ends"].toDouble(), before[u"ends"].toDouble(), 3.0);
        EXPECT_EQ(bridge->next(2s), QJsonObject());
    }
}

TEST_F(ABridge, SeesAQuit) {
    startTarne();
    startBridge(u"inactive"_s);
    tellTarne("start 1500 Write the report");
    expectSession(u"active"_s, 2s);
    quitTarne();
    expectSession(u"inactive"_s, 3s);
}

TEST_F(ABridge, IsNotWokenWithoutASession) {
    startTarne();
    startBridge(u"inactive"_s);
    EXPECT_EQ(bridge->next(1500ms), QJsonObject());
    const int before = bridge->wakes();
    // TARNE publishes, and changes nothing.
    EXPECT_EQ(bridge->next(4s), QJsonObject());
    EXPECT_EQ(bridge->wakes() - before, 0);
    quitTarne();
    EXPECT_EQ(bridge->next(1500ms), QJsonObject());
    const int after = bridge->wakes();
    EXPECT_EQ(bridge->next(2s), QJsonObject());
    EXPECT_EQ(bridge->wakes() - after, 0);
}

TEST_F(ABridge, TellsOfAStoreThatGoes) {
    startTarne();
    startBridge(u"inactive"_s);
    quitTarne();
    QDir(dataFolder()).removeRecursively();
    expectSession(u"unavailable"_s, 5s);
}

TEST_F(ABridge, AnswersItselfWithoutASessionWithoutGoalsAndWithoutAServer) {
    startTarne();
    startBridge(u"inactive"_s);
    EXPECT_EQ(answerTo(question("classify"))[u"error"], u"no_session"_s);
    EXPECT_EQ(answerTo(R"({"v":1,"id":8,"op":"state"})")[u"error"], u"no_server"_s);
    tellTarne("start 1500 ,");
    expectSession(u"active"_s, 2s);
    EXPECT_EQ(lastSession[u"goals"], u","_s);
    EXPECT_EQ(answerTo(question("classify"))[u"error"], u"no_goals"_s);
    tellTarne("end");
    expectSession(u"inactive"_s, 2s);
    tellTarne("start 1500 Write");
    expectSession(u"active"_s, 2s);
    EXPECT_EQ(answerTo(question("classify")),
              (QJsonObject{{u"v"_s, 1}, {u"id"_s, 7}, {u"error"_s, u"no_server"_s}}));
}

TEST_F(ABridge, RelaysToTheServerAndFollowsItOverRestarts) {
    startTarne();
    startServer(3000);
    startBridge(u"inactive"_s, u"no_key"_s);
    tellTarne("start 1500 Write the report");
    expectSession(u"active"_s, 2s);
    EXPECT_EQ(answerTo(question("classify"))[u"error"], u"no_key"_s);
    EXPECT_EQ(answerTo(question("override"))[u"ok"], true);
    EXPECT_EQ(answerTo(question("classify"))[u"source"], u"override"_s);
    EXPECT_EQ(answerTo(question("classify", "Another film"))[u"error"], u"no_key"_s);
    EXPECT_EQ(answerTo(R"({"v":1,"id":8,"op":"state"})"),
              (QJsonObject{{u"v"_s, 1}, {u"id"_s, 8}, {u"key"_s, false}, {u"left_today"_s, 300}}));

    terminateServer();
    EXPECT_EQ(bridge->next()[u"state"], u"absent"_s);
    startServer(3001, u"a-key"_s);
    EXPECT_EQ(bridge->next()[u"state"], u"ready"_s);
    killServer();
    EXPECT_EQ(bridge->next()[u"state"], u"absent"_s);
    // Beside the name that the killed one has left.
    startServer(3000, u"a-key"_s);
    EXPECT_EQ(bridge->next()[u"state"], u"ready"_s);
    EXPECT_EQ(answerTo(question("override"))[u"ok"], true);
}

TEST_F(ABridge, KilledAt200RandomInstantsHarmsNothingAndTheNextOneTellsTheSame) {
    constexpr int kills = rounds(200);
    std::minstd_rand random(proofSeed());
    startTarne();
    startServer(3000);
    startBridge(u"inactive"_s, u"no_key"_s);
    tellTarne("start 10000 Write the report");
    expectSession(u"active"_s, 2s);
    const QJsonObject session = lastSession;
    const double before = lastUpdate();
    int answered = 0;
    int harmed = 0;
    for (int kill = 0; kill < kills; ++kill) {
        if (kill % 2 == 0) {
            // In its start.
            bridge.emplace(m_environment);
            bridge->greet();
            std::ignore = bridge->next(std::chrono::milliseconds(random() % 20));
        } else {
            startBridge(u"active"_s, u"no_key"_s);
            EXPECT_EQ(lastSession[u"id"], session[u"id"]);
            EXPECT_NEAR(lastSession[u"ends"].toDouble(), session[u"ends"].toDouble(), 3.0);
            // With questions under way, each of which leaves its override with the server.
            for (unsigned asked = random() % 4; asked > 0; --asked)
                bridge->say(question("override"));
            answered +=
                bridge->next(std::chrono::milliseconds(random() % 20)).contains(u"ok") ? 1 : 0;
        }
        bridge->kill();
        harmed += isStoreSound() ? 0 : 1;
    }
    startBridge(u"active"_s, u"no_key"_s);
    EXPECT_EQ(harmed, 0);
    EXPECT_GT(answered, 0);
    EXPECT_EQ(answerTo(question("classify"))[u"source"], u"override"_s);
    EXPECT_TRUE(serveUntil([&] { return lastUpdate() > before; })) << "TARNE goes on all the while";
    printProof("bridge-kills",
               QByteArray::number(kills) + " kills, " + QByteArray::number(answered) +
                   " of them after an answer, store harmed by " + QByteArray::number(harmed));
}

TEST_F(ABridge, AsksAboutTheSessionThatIsActiveAndNoOther) {
    startTarne();
    startServer(3000);
    startBridge(u"inactive"_s, u"no_key"_s);
    tellTarne("start 1500 Write");
    expectSession(u"active"_s, 2s);
    EXPECT_EQ(answerTo(question("override"))[u"ok"], true);
    tellTarne("end");
    expectSession(u"inactive"_s, 2s);
    EXPECT_EQ(answerTo(question("classify"))[u"error"], u"no_session"_s);
    tellTarne("start 1500 Read");
    expectSession(u"active"_s, 2s);
    // What was said for other goals says nothing for these.
    EXPECT_EQ(answerTo(question("classify"))[u"error"], u"no_key"_s);
}

} // namespace
} // namespace tarne::test
