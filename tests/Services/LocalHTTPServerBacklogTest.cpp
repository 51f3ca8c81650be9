#include "LocalHTTPServerFixture.h"

#include <atomic>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

/// Connections that wait, with what they have sent, while the first one is being handled.
class LocalHTTPServerBacklog : public LocalHTTPServerTest {
protected:
    void SetUp() override {
        server->getCurrentSessionData = [this] {
            if (++calls == 1)
                waitUntil([this] { return isReleased.load(); });
            return QVariantMap{{u"goals"_s, text}};
        };
        start();
        log.takeLines();
        m_first = connect();
        send(*m_first, goals);
        ASSERT_TRUE(waitUntil([this] { return calls == 1; }));
    }
    void TearDown() override {
        isReleased = true;
        server.reset(); // It refers to what follows.
    }

    void release() {
        isReleased = true;
        EXPECT_TRUE(readToEnd(*m_first).startsWith("HTTP/1.1 200 OK\r\n"));
    }

    QString text;
    std::atomic<int> calls = 0;
    std::atomic<bool> isReleased = false;

private:
    std::unique_ptr<QTcpSocket> m_first;
};

TEST_F(LocalHTTPServerBacklog, AreAnsweredInTheirTurn) {
    const auto goalsClient = connect();
    send(*goalsClient, goals);
    const auto healthClient = connect();
    send(*healthClient, "GET /health HTTP/1.1\r\n\r\n");
    release();
    EXPECT_TRUE(readToEnd(*goalsClient).endsWith("{\"goals\":\"\"}"));
    EXPECT_TRUE(readToEnd(*healthClient).contains("TARNE Local API"));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(LocalHTTPServerBacklog, APieceDuringALargeAnswerIsARequestOfItsOwnWithoutOne) {
    text = QString(20'000'000, u'g');
    const auto socket = connect();
    send(*socket, goals);
    release();
    ASSERT_TRUE(socket->waitForReadyRead(patience));
    send(*socket, goals);
    EXPECT_TRUE(waitUntil([this] { return calls == 3; }));
    const QByteArray response = readToEnd(*socket);
    EXPECT_EQ(response.count("HTTP/1.1 "), 1);
    EXPECT_EQ(response.size() - response.indexOf("\r\n\r\n") - 4, 20'000'012);
}

TEST_F(LocalHTTPServerBacklog, ARequestLargerThanOneReceiveGetsItsAnswer) {
    const auto socket = connect();
    send(*socket, "GET /goals HTTP/1.1\r\n" + QByteArray(100'000, 'x'));
    release();
    EXPECT_TRUE(readToEnd(*socket).startsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(LocalHTTPServerBacklog, AReceiveHolds8192BytesAndNoMore) {
    const QByteArray head = "GET /goals HTTP/1.1\r\n";
    const auto within = connect();
    send(*within, head + QByteArray(8191 - head.size(), 'x') + '\xff');
    const auto behind = connect();
    send(*behind, head + QByteArray(8192 - head.size(), 'x') + '\xff');
    release();
    EXPECT_TRUE(readToEnd(*within).startsWith("HTTP/1.1 400 Bad Request\r\n"));
    EXPECT_TRUE(readToEnd(*behind).startsWith("HTTP/1.1 200 OK\r\n"));
}

TEST_F(LocalHTTPServerBacklog, APeerThatHalfClosedAfterItsRequestGetsItsAnswer) {
    const auto socket = connect();
    send(*socket, goals);
    halfClose(*socket);
    release();
    EXPECT_TRUE(readToEnd(*socket).startsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(LocalHTTPServerBacklog, APeerThatHalfClosedWithoutARequestGetsNoResponseAndNoClose) {
    const auto socket = connect();
    halfClose(*socket);
    release();
    EXPECT_TRUE(ask(goals).startsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_FALSE(socket->waitForReadyRead(50));
    EXPECT_EQ(socket->state(), QAbstractSocket::ConnectedState);
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(LocalHTTPServerBacklog, APeerThatHasResetIsAReceiveError) {
    const auto socket = connect();
    reset(*socket);
    release();
    ASSERT_TRUE(waitForLine(u"error"_s));
    EXPECT_TRUE(ask(goals).startsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_EQ(log.lines(), QStringList{u"Receive error: Connection reset by peer"_s});
}

TEST_F(LocalHTTPServerBacklog, AreAllClosedWithTheServer) {
    const auto socket = connect();
    send(*socket, goals);
    isReleased = true;
    server.reset();
    EXPECT_TRUE(socket->state() == QAbstractSocket::UnconnectedState ||
                socket->waitForDisconnected(patience));
}

} // namespace
} // namespace tarne::test
