#include "LocalHTTPServerFixture.h"

#include <atomic>
#include <utility>
#include <vector>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

class LocalHTTPServerPorts : public LocalHTTPServerTest {};

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
    LocalHTTPServer other(time, log);
    {
        const DescriptorLimit none(0);
        other.start();
    }
    QStringList expected;
    for (const int candidate : {8080, 8081, 8082, 8081, 8082, 8083})
        expected += u"⚠️  Port %1 unavailable: Too many open files"_s.arg(candidate);
    expected += u"❌ Failed to start TARNE HTTP Server on any available port"_s;
    EXPECT_EQ(log.lines(), expected);
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
} // namespace tarne
