#include "LocalHTTPServerFixture.h"

#include <atomic>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class LocalHTTPServerPorts : public LocalHTTPServerTest {
protected:
    /// The lower one of two neighbours.
    static quint16 firstOfTwoFreePorts() {
        while (true) {
            QTcpServer first;
            QTcpServer second;
            EXPECT_TRUE(first.listen(QHostAddress::Any));
            const int next = first.serverPort() + 1;
            if (next < 65535 && second.listen(QHostAddress::Any, static_cast<quint16>(next)))
                return first.serverPort();
        }
    }
};

/// Hands each line on and then does what the test wants done at that moment.
class WatchedLog final : public Log {
public:
    WatchedLog(Log &log, std::function<void()> watcher)
        : m_log(log), m_watcher(std::move(watcher)) {}

    void line(const QString &text) override {
        m_log.line(text);
        m_watcher();
    }

private:
    Log &m_log;
    std::function<void()> m_watcher;
};

TEST_F(LocalHTTPServerPorts, ThePortIs8080UnlessAnotherIsGiven) {
    EXPECT_EQ(LocalHTTPServer(time, log).getPort(), 8080);
    EXPECT_EQ(server->getPort(), port);
}

TEST_F(LocalHTTPServerPorts, ConstructionOpensNoSocket) {
    QTcpServer other;
    EXPECT_TRUE(other.listen(QHostAddress::Any, port));
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(LocalHTTPServerPorts, TheReadyPortIsLogged) {
    start();
    EXPECT_EQ(log.lines(), QStringList{u"🌐 TARNE HTTP Server started on port %1"_s.arg(port)});
    EXPECT_EQ(server->getPort(), port);
}

TEST_F(LocalHTTPServerPorts, StoppingIsLoggedAndFreesThePort) {
    start();
    server->stop();
    ASSERT_TRUE(waitForLine(u"stopped"_s));
    EXPECT_EQ(log.lines().last(), u"🛑 TARNE HTTP Server stopped"_s);
    QTcpServer other;
    EXPECT_TRUE(other.listen(QHostAddress::Any, port));
    // There is no listener any more that could be stopped once more.
    server->stop();
    server.reset();
    EXPECT_EQ(log.lines().filter(u"stopped"_s).size(), 1);
}

TEST_F(LocalHTTPServerPorts, StoppingIsHeardWhileThereIsAlwaysANextConnection) {
    std::vector<int> clients; // Used on the server's thread alone until that has ended.
    std::atomic<int> calls = 0;
    server->getCurrentSessionData = [&] {
        ++calls;
        clients.push_back(::socket(AF_INET, SOCK_STREAM, 0));
        // Each request brings the next one along; the one before it has its answer.
        if (request(clients.back()) && clients.size() > 2)
            ::close(std::exchange(clients[clients.size() - 3], -1));
        return QVariantMap{};
    };
    start();
    ask(goals);
    EXPECT_TRUE(waitUntil([&] { return calls > 100; }));
    server->stop();
    EXPECT_TRUE(waitForLine(u"stopped"_s));
    server.reset();
    for (const int client : clients)
        ::close(client);
}

TEST_F(LocalHTTPServerPorts, StoppingWhatWasNotStartedDoesNothing) {
    server->stop();
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(LocalHTTPServerPorts, AStoppedServerStartsAgain) {
    start();
    server->stop();
    ASSERT_TRUE(waitForLine(u"stopped"_s));
    log.takeLines();
    start();
    EXPECT_TRUE(ask(goals).startsWith("HTTP/1.1 200 OK\r\n"));
}

TEST_F(LocalHTTPServerPorts, AReplacedListenerGoesOn) {
    start();
    const quint16 second = freePort();
    EXPECT_TRUE(server->startOnPort(second));
    EXPECT_TRUE(waitUntil([&] { return server->getPort() == second; }));
    EXPECT_TRUE(ask(goals).startsWith("HTTP/1.1 200 OK\r\n"));
}

TEST_F(LocalHTTPServerPorts, ANewStartBeginsAtThePortThatItHasNow) {
    start();
    const quint16 second = freePort();
    ASSERT_TRUE(server->startOnPort(second));
    ASSERT_TRUE(waitUntil([&] { return server->getPort() == second; }));
    server->stop();
    ASSERT_TRUE(waitForLine(u"stopped"_s));
    log.takeLines();
    server->start();
    ASSERT_TRUE(waitUntil([&] { return !log.lines().isEmpty(); }));
    EXPECT_EQ(log.lines(), QStringList{u"🌐 TARNE HTTP Server started on port %1"_s.arg(second)});
}

/// The port is held by another program, on one of these addresses.
class TakenPort : public LocalHTTPServerPorts,
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

TEST_P(TakenPort, LeavesAListenerThatStopsLikeAnyOther) {
    QTcpServer other;
    ASSERT_TRUE(other.listen(GetParam(), port));
    server->start();
    ASSERT_TRUE(waitForLine(u"failed"_s));
    log.takeLines();
    server->stop();
    ASSERT_TRUE(waitForLine(u"stopped"_s));
    EXPECT_EQ(log.lines(), QStringList{u"🛑 TARNE HTTP Server stopped"_s});
}

INSTANTIATE_TEST_SUITE_P(Addresses, TakenPort,
                         testing::Values(QHostAddress::AnyIPv4, QHostAddress::AnyIPv6,
                                         QHostAddress::Any, QHostAddress::LocalHost));

TEST_F(LocalHTTPServerPorts, WhereNoListenerCanBeMadeAllSixCandidatesAreTriedInOrder) {
    for (const auto &[asked, candidates] :
         {std::pair<quint16, QList<int>>{8080, {8080, 8081, 8082, 8081, 8082, 8083}},
          {9000, {9000, 9001, 9002, 8081, 8082, 8083}}}) {
        LocalHTTPServer other(time, log, asked);
        {
            const DescriptorLimit none(0);
            other.start();
        }
        QStringList expected;
        for (const int candidate : candidates)
            expected += u"⚠️  Port %1 unavailable: Too many open files"_s.arg(candidate);
        expected += u"❌ Failed to start TARNE HTTP Server on any available port"_s;
        EXPECT_EQ(log.takeLines(), expected);
        EXPECT_EQ(other.getPort(), asked);
    }
}

TEST_F(LocalHTTPServerPorts, TheFirstCandidateWhoseListenerCanBeMadeBecomesThePort) {
    const quint16 asked = firstOfTwoFreePorts();
    const quint16 next = asked + 1;
    auto limit = std::make_unique<DescriptorLimit>(0);
    WatchedLog watched(log, [&] { limit.reset(); });
    LocalHTTPServer other(time, watched, asked);
    other.start();
    ASSERT_TRUE(waitForLine(u"started on port"_s));
    EXPECT_EQ(log.lines(),
              (QStringList{u"⚠️  Port %1 unavailable: Too many open files"_s.arg(asked),
                           u"🌐 TARNE HTTP Server started on port %1"_s.arg(next)}));
    EXPECT_TRUE(waitUntil([&] { return other.getPort() == next; }));
}

TEST_F(LocalHTTPServerPorts, APortWithoutRoomForTwoMoreEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(LocalHTTPServer(time, log, 65534).start(), "fatal");
    EXPECT_DEATH(LocalHTTPServer(time, log, 65535).start(), "fatal");
}

TEST_F(LocalHTTPServerPorts, TheHighestPortWithRoomForTwoMoreIsTried) {
    LocalHTTPServer other(time, log, 65533);
    other.start();
    ASSERT_TRUE(waitForLine(u"65533"_s));
    EXPECT_EQ(log.lines(), QStringList{u"🌐 TARNE HTTP Server started on port 65533"_s});
}

} // namespace
} // namespace tarne::test
