// The real program under the contract by which TARNE starts, watches and stops it.

#include "Proof.h"
#include "Rounds.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

constexpr int patience = 20'000;
constexpr quint16 port = 3000;
const QString key = u"key-of-the-test"_s;

class TheServer : public testing::Test {
protected:
    TheServer() {
        m_environment = QProcessEnvironment::systemEnvironment();
        m_environment.insert(u"XDG_RUNTIME_DIR"_s, m_home.path());
        m_environment.insert(u"XDG_DATA_HOME"_s, m_home.filePath(u"data"_s));
        m_environment.remove(u"PORT"_s);
        m_environment.remove(u"GEMINI_API_KEY"_s);
        // That sanitizer waits for a second at the end of a program that has threads.
        m_environment.insert(u"TSAN_OPTIONS"_s, u"atexit_sleep_ms=0"_s);
    }
    ~TheServer() override {
        process.kill();
        process.waitForFinished();
    }

    void set(const QString &variable, const QString &value) {
        m_environment.insert(variable, value);
    }
    void unset(const QString &variable) { m_environment.remove(variable); }

    /// Starts it and waits for its line.
    void start(const QStringList &arguments = {QString::number(port)}) {
        launch(arguments);
        ASSERT_TRUE(process.waitForReadyRead(patience));
        m_output += process.readAllStandardOutput();
        EXPECT_EQ(m_output, "TARNE Classification Server running on port 3000\n");
    }
    void launch(const QStringList &arguments) {
        process.setProcessEnvironment(m_environment);
        process.start(QStringLiteral(TARNE_CLASSIFICATION_SERVER), arguments);
        ASSERT_TRUE(process.waitForStarted());
    }
    /// Its status, or -1 where it was ended by a signal or does not end.
    int status() {
        if (process.state() != QProcess::NotRunning && !process.waitForFinished(patience))
            return -1;
        m_output += process.readAllStandardOutput();
        EXPECT_EQ(process.readAllStandardError(), "");
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
    /// Ends it as TARNE does; milliseconds.
    qint64 terminate() {
        QElapsedTimer timer;
        timer.start();
        process.terminate();
        EXPECT_EQ(status(), 0);
        EXPECT_EQ(m_output.count('\n'), 1);
        return timer.elapsed();
    }

    static QByteArray get(const QByteArray &path,
                          const QHostAddress &host = QHostAddress::LocalHost) {
        QTcpSocket socket;
        socket.connectToHost(host, port);
        socket.write("GET " + path + " HTTP/1.1\r\nHost: localhost\r\n\r\n");
        while (socket.state() != QAbstractSocket::UnconnectedState &&
               socket.waitForReadyRead(patience)) {
        }
        return socket.readAll();
    }
    QJsonObject answerTo(const QByteArray &line) const {
        QLocalSocket socket;
        socket.connectToServer(socketFile());
        socket.write(line + '\n');
        while (!socket.canReadLine() && socket.waitForReadyRead(patience)) {
        }
        return QJsonDocument::fromJson(socket.readLine()).object();
    }
    static QByteArray question(const QByteArray &op) {
        return R"({"v":1,"id":7,"op":")" + op +
               R"(","goals":"Write","page":{"origin":"https://secret.example","path":"/a"}})";
    }

    QString folder() const { return m_home.filePath(u"com.tarne.app"_s); }
    QString socketFile() const { return folder() + u"/server-3000.sock"_s; }
    QString home() const { return m_home.path(); }

    QProcess process;

private:
    QTemporaryDir m_home;
    QProcessEnvironment m_environment;
    QByteArray m_output;
};

TEST_F(TheServer, TellsItsPortIsHealthyAndEndsWithZeroAtOnce) {
    set(u"PORT"_s, u"3000"_s);
    start();
    EXPECT_TRUE(get("/health").startsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_TRUE(get("/goals").startsWith("HTTP/1.1 404 Not Found\r\n"));
    EXPECT_LT(terminate(), 500);
    EXPECT_FALSE(QFileInfo::exists(socketFile()));
}

TEST_F(TheServer, IsTheSameWithAndWithoutAKey) {
    start();
    EXPECT_EQ(answerTo(R"({"v":1,"id":8,"op":"state"})")[u"key"], false);
    EXPECT_EQ(answerTo(question("classify"))[u"error"], u"no_key"_s);
    terminate();
}

TEST_F(TheServer, EndsAtOnceWithAQuestionUnderWay) {
    set(u"GEMINI_API_KEY"_s, key);
    start();
    EXPECT_EQ(answerTo(R"({"v":1,"id":8,"op":"state"})")[u"key"], true);
    QLocalSocket socket;
    socket.connectToServer(socketFile());
    socket.write(question("classify") + '\n');
    ASSERT_TRUE(socket.waitForBytesWritten(patience) || socket.bytesToWrite() == 0);
    EXPECT_LT(terminate(), 500);
}

TEST_F(TheServer, WithoutANetworkSaysSo) {
    set(u"GEMINI_API_KEY"_s, key);
    start();
    EXPECT_EQ(answerTo(question("classify"))[u"error"], u"offline"_s);
    EXPECT_EQ(answerTo(R"({"v":1,"id":8,"op":"state"})")[u"left_today"], 299);
    terminate();
}

TEST_F(TheServer, TakesAKeyThatNoAddressCanCarryForNone) {
    set(u"GEMINI_API_KEY"_s, u"a key with blanks"_s);
    start();
    EXPECT_EQ(answerTo(R"({"v":1,"id":8,"op":"state"})")[u"key"], false);
    terminate();
}

TEST_F(TheServer, LeavesNoKeyAndNoPageInAnyFileOrArgument) {
    set(u"GEMINI_API_KEY"_s, key);
    start();
    answerTo(question("classify"));
    answerTo(question("override"));
    QFile commandLine(u"/proc/%1/cmdline"_s.arg(process.processId()));
    ASSERT_TRUE(commandLine.open(QIODevice::ReadOnly));
    EXPECT_FALSE(commandLine.readAll().contains(key.toUtf8()));
    EXPECT_EQ(QDir(folder()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
              (QStringList{u"questions-today"_s, u"server-3000.sock"_s}));
    QFile count(folder() + u"/questions-today"_s);
    ASSERT_TRUE(count.open(QIODevice::ReadOnly));
    EXPECT_FALSE(count.readAll().contains("secret"));
    terminate();
    EXPECT_EQ(QDir(home()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList{u"com.tarne.app"_s});
}

TEST_F(TheServer, GoesOnCountingTheDayAfterARestart) {
    set(u"GEMINI_API_KEY"_s, key);
    start();
    answerTo(question("classify"));
    terminate();
    launch({u"3000"_s});
    ASSERT_TRUE(process.waitForReadyRead(patience));
    EXPECT_EQ(answerTo(R"({"v":1,"id":8,"op":"state"})")[u"left_today"], 299);
}

/// What the day's count may be, with some questions answered and others cut off.
class CountedQuestions {
public:
    void send() { ++m_sent; }
    void answer() { ++m_answered; }
    void compare(int left) {
        if (std::exchange(m_day, today()) != m_day)
            m_answered = 0; // The day's count begins anew.
        EXPECT_GE(left, 300 - m_sent);
        EXPECT_LE(left, 300 - m_answered);
        m_forgotten = std::max(m_forgotten, left - (300 - m_answered));
    }
    int answered() const { return m_answered; }
    int forgotten() const { return m_forgotten; }

private:
    static QDate today() { return QDateTime::currentDateTimeUtc().date(); }

    QDate m_day = today();
    int m_sent = 0;
    int m_answered = 0;
    int m_forgotten = 0;
};

TEST_F(TheServer, KilledAt200RandomInstantsForgetsNoQuestionOfTheDayThatItAnswered) {
    constexpr int kills = rounds(200);
    // A build that makes fewer rounds is as much slower.
    constexpr unsigned longestWait = 30 * 200 / kills; // Milliseconds.
    set(u"GEMINI_API_KEY"_s, key);
    std::minstd_rand random(proofSeed());
    CountedQuestions counted;
    for (int kill = 0; kill < kills; ++kill) {
        launch({u"3000"_s});
        if (kill % 2 == 0) {
            // In its start.
            process.waitForReadyRead(static_cast<int>(random() % longestWait));
        } else {
            ASSERT_TRUE(process.waitForReadyRead(patience)) << kill;
            counted.compare(answerTo(R"({"v":1,"id":8,"op":"state"})")[u"left_today"].toInt());
            QLocalSocket socket;
            socket.connectToServer(socketFile());
            socket.write(question("classify") + '\n');
            socket.flush();
            counted.send();
            // Half of them after an answer, however busy the machine is.
            const auto instant = static_cast<int>(random() % longestWait);
            if (socket.waitForReadyRead(kill % 4 == 3 ? patience : instant))
                counted.answer();
        }
        process.kill();
        ASSERT_TRUE(process.waitForFinished(patience));
        EXPECT_EQ(process.readAllStandardError(), "");
    }
    EXPECT_GT(counted.answered(), kills / 20);
    start();
    EXPECT_TRUE(get("/health").startsWith("HTTP/1.1 200 OK\r\n"));
    counted.compare(answerTo(R"({"v":1,"id":8,"op":"state"})")[u"left_today"].toInt());
    printProof("server-kills", QByteArray::number(kills) + " kills, " +
                                   QByteArray::number(counted.answered()) +
                                   " answered questions, " +
                                   QByteArray::number(counted.forgotten()) + " forgotten");
}

TEST_F(TheServer, AsksInTheStoresFolderWhereThereIsNoRuntimeFolder) {
    unset(u"XDG_RUNTIME_DIR"_s);
    start();
    EXPECT_TRUE(QFileInfo::exists(home() + u"/data/com.tarne.app/server-3000.sock"_s));
    terminate();
}

TEST_F(TheServer, IsHealthyWhereItCanHaveNoSocket) {
    QFile inTheWay(folder());
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    start();
    EXPECT_TRUE(get("/health").startsWith("HTTP/1.1 200 OK\r\n"));
    terminate();
}

TEST_F(TheServer, EndsSilentlyOnAPortThatIsTaken) {
    QTcpServer other;
    ASSERT_TRUE(other.listen(QHostAddress::LocalHost, port));
    launch({u"3000"_s});
    EXPECT_EQ(status(), 1);
    EXPECT_EQ(process.readAllStandardOutput(), "");
}

TEST_F(TheServer, EndsSilentlyWhereItIsToldNoPortOrTwo) {
    for (const QStringList &arguments :
         {QStringList(), QStringList{u"0"_s}, QStringList{u"65536"_s}, QStringList{u"3000x"_s},
          QStringList{u"-1"_s}, QStringList{u"3000"_s, u"3001"_s}, QStringList{u""_s}}) {
        launch(arguments);
        EXPECT_EQ(status(), 2) << qPrintable(arguments.join(u' '));
    }
    set(u"PORT"_s, u"3001"_s);
    launch({u"3000"_s});
    EXPECT_EQ(status(), 2);
}

} // namespace
} // namespace tarne::test
