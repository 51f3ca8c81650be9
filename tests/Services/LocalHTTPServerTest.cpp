#include "LocalHTTPServer.h"

#include "ManualTime.h"
#include "RecordingLog.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

constexpr int patience = 20'000;

bool waitUntil(const std::function<bool()> &condition) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > patience)
            return false;
        QThread::usleep(200);
    }
    return true;
}

quint16 freePort() {
    QTcpServer server;
    EXPECT_TRUE(server.listen(QHostAddress::Any));
    return server.serverPort();
}

class LocalHTTPServerTest : public testing::Test {
protected:
    void start() {
        server->start();
        ASSERT_TRUE(waitForLine(u"started on port"_s));
    }
    bool waitForLine(const QString &part) {
        return waitUntil([&] { return !log.lines().filter(part).isEmpty(); });
    }

    std::unique_ptr<QTcpSocket> connect(const QHostAddress &address = QHostAddress::LocalHost) {
        auto socket = std::make_unique<QTcpSocket>();
        socket->connectToHost(address, port);
        EXPECT_TRUE(socket->waitForConnected(patience));
        return socket;
    }
    static void send(QTcpSocket &socket, const QByteArray &bytes) {
        socket.write(bytes);
        socket.flush();
    }
    /// All that comes until the server closes.
    static QByteArray readToEnd(QTcpSocket &socket) {
        while (socket.state() == QAbstractSocket::ConnectedState &&
               socket.waitForReadyRead(patience)) {
        }
        return socket.readAll();
    }
    QByteArray ask(const QByteArray &request) {
        const auto socket = connect();
        send(*socket, request);
        return readToEnd(*socket);
    }

    const QByteArray goals = "GET /goals HTTP/1.1\r\nHost: localhost\r\n\r\n";
    quint16 port = freePort();
    test::ManualTime time;
    test::RecordingLog log;
    std::unique_ptr<LocalHTTPServer> server = std::make_unique<LocalHTTPServer>(time, log, port);
};

TEST_F(LocalHTTPServerTest, ThePortIs8080UnlessAnotherIsGiven) {
    EXPECT_EQ(LocalHTTPServer(time, log).getPort(), 8080);
    EXPECT_EQ(server->getPort(), port);
}

TEST_F(LocalHTTPServerTest, ConstructionOpensNoSocket) {
    QTcpServer other;
    EXPECT_TRUE(other.listen(QHostAddress::Any, port));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(LocalHTTPServerTest, TheReadyPortIsLogged) {
    start();
    EXPECT_EQ(log.lines(), QStringList{u"🌐 TARNE HTTP Server started on port %1"_s.arg(port)});
    EXPECT_EQ(server->getPort(), port);
}

TEST_F(LocalHTTPServerTest, AnswersOneRequestAndCloses) {
    start();
    const QByteArray response = ask(goals);
    EXPECT_TRUE(response.startsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_TRUE(response.endsWith("{\"active\":false,\"goals\":\"\",\"sessionId\":\"\"}"));
}

TEST_F(LocalHTTPServerTest, AnswersOnAllInterfacesInBothFamilies) {
    start();
    for (const QHostAddress &address : {QHostAddress(u"127.0.0.1"_s), QHostAddress(u"127.0.0.2"_s),
                                        QHostAddress(QHostAddress::LocalHostIPv6)}) {
        const auto socket = connect(address);
        send(*socket, goals);
        EXPECT_TRUE(readToEnd(*socket).startsWith("HTTP/1.1 200 OK\r\n"));
    }
}

TEST_F(LocalHTTPServerTest, TheSourceIsCalledOnTheThreadLabelledHTTPServer) {
    QByteArray label(16, '\0');
    server->getCurrentSessionData = [&] {
        ::prctl(PR_GET_NAME, label.data());
        return QVariantMap{{u"active"_s, true}};
    };
    start();
    EXPECT_TRUE(ask(goals).endsWith("{\"active\":true}"));
    EXPECT_EQ(QByteArray(label.constData()), "HTTPServer");
}

TEST_F(LocalHTTPServerTest, ARequestCutAtAnyByteIsAnsweredFromItsFirstPiece) {
    start();
    for (qsizetype cut = 1; cut < goals.size(); ++cut) {
        const auto socket = connect();
        send(*socket, goals.left(cut));
        const QByteArray response = readToEnd(*socket);
        const QByteArray status = cut <= 3 ? "400" : cut < 10 ? "404" : "200";
        EXPECT_TRUE(response.startsWith("HTTP/1.1 " + status)) << cut << response.constData();
    }
}

TEST_F(LocalHTTPServerTest, OneByteMoreThanAReceiveHoldsCostsNobodyTheAnswer) {
    start();
    const QByteArray head = "GET /goals HTTP/1.1\r\n";
    for (const qsizetype size : {8191, 8192, 8193, 100'000}) {
        const QByteArray response = ask(head + QByteArray(size - head.size(), 'x'));
        EXPECT_TRUE(response.startsWith("HTTP/1.1 200 OK\r\n")) << size;
    }
}

TEST_F(LocalHTTPServerTest, PipelinedRequestsGetOneAnswer) {
    start();
    const QByteArray both = ask(goals + "GET /health HTTP/1.1\r\n\r\n");
    EXPECT_EQ(both.count("HTTP/1.1 "), 1);
    EXPECT_TRUE(both.endsWith("{\"active\":false,\"goals\":\"\",\"sessionId\":\"\"}"));
}

TEST_F(LocalHTTPServerTest, BytesThatAreNoRequestAreAnsweredAndLogNothing) {
    start();
    log.takeLines();
    EXPECT_TRUE(ask(QByteArray(8192, '\0')).startsWith("HTTP/1.1 400 Bad Request\r\n"));
    EXPECT_TRUE(ask("\xff\xfe GET /goals").startsWith("HTTP/1.1 400 Bad Request\r\n"));
    EXPECT_TRUE(ask(QByteArray("GET /goals\0 HTTP/1.1", 20)).startsWith("HTTP/1.1 404"));
    EXPECT_TRUE(ask(QByteArray(8192, ' ')).startsWith("HTTP/1.1 404 Not Found\r\n"));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(LocalHTTPServerTest, AChildProcessInheritsNoneOfItsSockets) {
    start();
    const auto held = connect();
    ASSERT_TRUE(ask(goals).startsWith("HTTP/1.1 200 OK\r\n")) << "the connection is accepted";
    QProcess child;
    child.start(u"/bin/ls"_s, {u"-l"_s, u"/proc/self/fd"_s});
    ASSERT_TRUE(child.waitForFinished(patience));
    const QByteArray open = child.readAllStandardOutput();
    EXPECT_TRUE(open.contains("/proc/")) << open.constData();
    EXPECT_FALSE(open.contains("socket:")) << open.constData();
}

TEST_F(LocalHTTPServerTest, APeerThatHalfClosesAfterItsRequestStillGetsItsAnswer) {
    start();
    const auto socket = connect();
    send(*socket, goals);
    ::shutdown(static_cast<int>(socket->socketDescriptor()), SHUT_WR);
    EXPECT_TRUE(readToEnd(*socket).startsWith("HTTP/1.1 200 OK\r\n"));
}

TEST_F(LocalHTTPServerTest, APeerThatHalfClosesWithoutARequestGetsNoResponseAndNoClose) {
    start();
    const auto socket = connect();
    ::shutdown(static_cast<int>(socket->socketDescriptor()), SHUT_WR);
    EXPECT_TRUE(ask(goals).startsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_FALSE(socket->waitForReadyRead(50));
    EXPECT_EQ(socket->state(), QAbstractSocket::ConnectedState);
}

TEST_F(LocalHTTPServerTest, AHalfClosedPeerThatResetsIsReportedOnce) {
    start();
    const auto socket = connect();
    const auto descriptor = static_cast<int>(socket->socketDescriptor());
    ::shutdown(descriptor, SHUT_WR);
    ask(goals);
    const linger reset{1, 0};
    ::setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
    socket->abort();
    ASSERT_TRUE(waitForLine(u"Connection failed"_s));
    // So the system calls a reset that comes after the peer's end of data.
    EXPECT_EQ(log.lines().filter(u"failed"_s), QStringList{u"Connection failed: Broken pipe"_s});
}

TEST_F(LocalHTTPServerTest, ASilentPeerIsKept) {
    start();
    const auto silent = connect();
    ask(goals);
    EXPECT_FALSE(silent->waitForReadyRead(50));
    send(*silent, goals);
    EXPECT_TRUE(readToEnd(*silent).startsWith("HTTP/1.1 200 OK\r\n"));
}

TEST_F(LocalHTTPServerTest, AResetBeforeTheRequestIsAReceiveError) {
    start();
    const auto socket = connect();
    const linger reset{1, 0};
    ::setsockopt(static_cast<int>(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &reset,
                 sizeof reset);
    socket->abort();
    ASSERT_TRUE(waitForLine(u"Receive error"_s));
    EXPECT_EQ(log.lines().last(), u"Receive error: Connection reset by peer"_s);
    EXPECT_TRUE(ask(goals).startsWith("HTTP/1.1 200 OK\r\n"));
}

TEST_F(LocalHTTPServerTest, AResetInTheMiddleOfAnAnswerCostsThatConnectionOnly) {
    const QString large(20'000'000, u'g');
    server->getCurrentSessionData = [&] { return QVariantMap{{u"goals"_s, large}}; };
    start();
    {
        const auto socket = connect();
        send(*socket, goals);
        ASSERT_TRUE(socket->waitForReadyRead(patience));
        const linger reset{1, 0};
        ::setsockopt(static_cast<int>(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &reset,
                     sizeof reset);
        socket->abort();
    }
    ASSERT_TRUE(waitUntil([&] {
        return !log.lines().filter(u"Send error"_s).isEmpty() ||
               !log.lines().filter(u"Receive error"_s).isEmpty();
    }));
    EXPECT_TRUE(ask("GET /health").startsWith("HTTP/1.1 200 OK\r\n"));
}

TEST_F(LocalHTTPServerTest, ALargeAnswerArrivesWhole) {
    const QString large(20'000'000, u'g');
    server->getCurrentSessionData = [&] { return QVariantMap{{u"goals"_s, large}}; };
    start();
    const QByteArray response = ask(goals);
    EXPECT_TRUE(response.contains("Content-Length: 20000012\r\n"));
    EXPECT_TRUE(response.endsWith("g\"}"));
    EXPECT_EQ(response.size() - response.indexOf("\r\n\r\n") - 4, 20'000'012);
}

TEST_F(LocalHTTPServerTest, StoppingIsLoggedAndFreesThePort) {
    start();
    server->stop();
    ASSERT_TRUE(waitForLine(u"stopped"_s));
    EXPECT_EQ(log.lines().last(), u"🛑 TARNE HTTP Server stopped"_s);
    QTcpServer other;
    EXPECT_TRUE(other.listen(QHostAddress::Any, port));
}

TEST_F(LocalHTTPServerTest, StoppingWhatWasNotStartedDoesNothing) {
    server->stop();
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(LocalHTTPServerTest, AStoppedServerStartsAgain) {
    start();
    server->stop();
    ASSERT_TRUE(waitForLine(u"stopped"_s));
    log.takeLines();
    start();
    EXPECT_TRUE(ask(goals).startsWith("HTTP/1.1 200 OK\r\n"));
}

TEST_F(LocalHTTPServerTest, AReplacedListenerGoesOn) {
    start();
    const quint16 second = freePort();
    EXPECT_TRUE(server->startOnPort(second));
    ASSERT_TRUE(waitForLine(QString::number(second)));
    EXPECT_EQ(server->getPort(), second);
    EXPECT_TRUE(ask(goals).startsWith("HTTP/1.1 200 OK\r\n"));
}

/// The port is held by another program, on one of these addresses.
class TakenPort : public LocalHTTPServerTest,
                  public testing::WithParamInterface<QHostAddress::SpecialAddress> {};

TEST_P(TakenPort, FailsAfterTheStartWithoutMovingToTheNextCandidate) {
    QTcpServer other;
    ASSERT_TRUE(other.listen(GetParam(), port));
    server->start();
    ASSERT_TRUE(waitForLine(u"failed"_s));
    EXPECT_EQ(log.lines(), QStringList{u"❌ TARNE HTTP Server failed on port %1: "
                                       "Address already in use"_s.arg(port)});
    EXPECT_EQ(server->getPort(), port);
}

INSTANTIATE_TEST_SUITE_P(Addresses, TakenPort,
                         testing::Values(QHostAddress::AnyIPv4, QHostAddress::AnyIPv6,
                                         QHostAddress::Any, QHostAddress::LocalHost));

TEST_F(LocalHTTPServerTest, WhereNoListenerCanBeMadeAllSixCandidatesAreTriedInOrder) {
    rlimit before;
    ::getrlimit(RLIMIT_NOFILE, &before);
    LocalHTTPServer other(time, log);
    const rlimit none{0, before.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &none);
    other.start();
    ::setrlimit(RLIMIT_NOFILE, &before);
    QStringList expected;
    for (const int candidate : {8080, 8081, 8082, 8081, 8082, 8083})
        expected += u"⚠️  Port %1 unavailable: Too many open files"_s.arg(candidate);
    expected += u"❌ Failed to start TARNE HTTP Server on any available port"_s;
    EXPECT_EQ(log.lines(), expected);
}

TEST_F(LocalHTTPServerTest, APortWithoutRoomForTwoMoreEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(LocalHTTPServer(time, log, 65534).start(), "fatal");
    EXPECT_DEATH(LocalHTTPServer(time, log, 65535).start(), "fatal");
}

TEST_F(LocalHTTPServerTest, ManySilentConnectionsDelayNobody) {
    rlimit limit;
    ::getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit raised{std::min<rlim_t>(4096, limit.rlim_max), limit.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &raised);
    start();
    std::vector<std::unique_ptr<QTcpSocket>> silent;
    for (int i = 0; i < 1000; ++i)
        silent.push_back(connect());
    EXPECT_TRUE(ask(goals).startsWith("HTTP/1.1 200 OK\r\n"));
    silent.clear();
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

TEST_F(LocalHTTPServerTest, DestroyedWithRequestsInFlightItWaitsForTheOneBeingHandled) {
    std::atomic<bool> isHandling = false;
    std::atomic<bool> hasHandled = false;
    server->getCurrentSessionData = [&] {
        isHandling = true;
        QThread::msleep(50);
        hasHandled = true;
        return QVariantMap{};
    };
    start();
    std::vector<std::unique_ptr<QTcpSocket>> clients;
    for (int i = 0; i < 16; ++i) {
        clients.push_back(connect());
        send(*clients.back(), goals);
    }
    ASSERT_TRUE(waitUntil([&] { return isHandling.load(); }));
    server.reset();
    EXPECT_TRUE(hasHandled);
}

TEST_F(LocalHTTPServerTest, DestroyedRightAfterItsStartItEnds) {
    for (int i = 0; i < 50; ++i) {
        LocalHTTPServer brief(time, log, port);
        brief.start();
    }
}

} // namespace
} // namespace tarne
