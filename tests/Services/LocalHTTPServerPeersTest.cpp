#include "LocalHTTPServerFixture.h"

#include <atomic>
#include <vector>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class LocalHTTPServerPeers : public LocalHTTPServerTest {};

TEST_F(LocalHTTPServerPeers, APeerThatHalfClosesAfterItsRequestStillGetsItsAnswer) {
    start();
    const auto socket = connect();
    send(*socket, goals);
    halfClose(*socket);
    EXPECT_TRUE(readToEnd(*socket).startsWith("HTTP/1.1 200 OK\r\n"));
}

TEST_F(LocalHTTPServerPeers, APeerThatHalfClosesWithoutARequestGetsNoResponseAndNoClose) {
    start();
    const auto socket = connect();
    halfClose(*socket);
    EXPECT_TRUE(ask(goals).startsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_FALSE(socket->waitForReadyRead(50));
    EXPECT_EQ(socket->state(), QAbstractSocket::ConnectedState);
}

TEST_F(LocalHTTPServerPeers, AHalfClosedPeerThatResetsIsReportedOnce) {
    start();
    const auto socket = connect();
    halfClose(*socket);
    ask(goals);
    reset(*socket);
    ASSERT_TRUE(waitForLine(u"Connection failed"_s));
    // So the system calls a reset that comes after the peer's end of data.
    EXPECT_EQ(log.lines().filter(u"failed"_s), QStringList{u"Connection failed: Broken pipe"_s});
}

TEST_F(LocalHTTPServerPeers, ASilentPeerIsKept) {
    start();
    const auto silent = connect();
    ask(goals);
    EXPECT_FALSE(silent->waitForReadyRead(50));
    send(*silent, goals);
    EXPECT_TRUE(readToEnd(*silent).startsWith("HTTP/1.1 200 OK\r\n"));
}

TEST_F(LocalHTTPServerPeers, ManySilentConnectionsDelayNobody) {
    const DescriptorLimit raised(4096);
    start();
    std::vector<std::unique_ptr<QTcpSocket>> silent;
    for (int i = 0; i < 1000; ++i)
        silent.push_back(connect());
    EXPECT_TRUE(ask(goals).startsWith("HTTP/1.1 200 OK\r\n"));
}

TEST_F(LocalHTTPServerPeers, AResetBeforeTheRequestIsAReceiveError) {
    start();
    const auto socket = connect();
    reset(*socket);
    ASSERT_TRUE(waitForLine(u"Receive error"_s));
    EXPECT_EQ(log.lines().last(), u"Receive error: Connection reset by peer"_s);
    EXPECT_TRUE(ask(goals).startsWith("HTTP/1.1 200 OK\r\n"));
}

TEST_F(LocalHTTPServerPeers, AResetInTheMiddleOfAnAnswerCostsThatConnectionOnly) {
    const QString large(20'000'000, u'g');
    server->getCurrentSessionData = [&] { return QVariantMap{{u"goals"_s, large}}; };
    start();
    {
        const auto socket = connect();
        send(*socket, goals);
        ASSERT_TRUE(socket->waitForReadyRead(patience));
        reset(*socket);
    }
    ASSERT_TRUE(waitForLine(u"error"_s));
    EXPECT_TRUE(ask("GET /health").startsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_EQ(log.lines().filter(u"error"_s),
              QStringList{u"Send error: Connection reset by peer"_s});
}

TEST_F(LocalHTTPServerPeers, AResetBeforeTheAnswerIsASendErrorAndCostsThatConnectionOnly) {
    std::atomic<bool> isAsked = false;
    std::atomic<bool> isReset = false;
    server->getCurrentSessionData = [&] {
        isAsked = true;
        waitUntil([&] { return isReset.load(); });
        return QVariantMap{};
    };
    start();
    log.takeLines();
    const auto socket = connect();
    send(*socket, goals);
    ASSERT_TRUE(waitUntil([&] { return isAsked.load(); }));
    reset(*socket);
    isReset = true;
    EXPECT_TRUE(ask("GET /health").startsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_EQ(log.lines(), QStringList{u"Send error: Connection reset by peer"_s});
}

TEST_F(LocalHTTPServerPeers, DestroyedWithRequestsInFlightItWaitsForTheOneBeingHandled) {
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

TEST_F(LocalHTTPServerPeers, DestroyedRightAfterItsStartItEnds) {
    for (int i = 0; i < 50; ++i) {
        LocalHTTPServer brief(time, log, port);
        brief.start();
    }
}

} // namespace
} // namespace tarne::test
