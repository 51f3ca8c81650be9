#include "SocketPortProbe.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <gtest/gtest.h>

#include <sys/resource.h>

namespace tarne::test {
namespace {

TEST(SocketPortProbe, AFreePortCanBeBoundAgainAndAgain) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const int port = server.serverPort();
    server.close();
    EXPECT_TRUE(SocketPortProbe().canBind(port));
    EXPECT_TRUE(SocketPortProbe().canBind(port));
}

TEST(SocketPortProbe, APortWithAListenerOnLoopbackCannot) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    EXPECT_FALSE(SocketPortProbe().canBind(server.serverPort()));
}

TEST(SocketPortProbe, APortWithAListenerOnAllInterfacesCannot) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::AnyIPv4));
    EXPECT_FALSE(SocketPortProbe().canBind(server.serverPort()));
}

TEST(SocketPortProbe, AListenerOnAnotherLoopbackAddressIsNotSeen) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress(QStringLiteral("127.0.0.2"))));
    EXPECT_TRUE(SocketPortProbe().canBind(server.serverPort()));
}

TEST(SocketPortProbe, APortWhoseLastConnectionHasJustEndedCannotSinceNoAddressIsUsedAgain) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const quint16 port = server.serverPort();
    QTcpSocket client;
    client.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
    ASSERT_TRUE(client.waitForConnected());
    ASSERT_TRUE(server.waitForNewConnection(20'000));
    // The side that ends it first keeps the address for a while.
    server.nextPendingConnection()->close();
    ASSERT_TRUE(client.state() == QAbstractSocket::UnconnectedState ||
                client.waitForDisconnected());
    server.close();
    EXPECT_FALSE(SocketPortProbe().canBind(port));
}

TEST(SocketPortProbe, APortCannotWhereNoSocketCanBeOpened) {
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const quint16 port = server.serverPort();
    server.close();
    rlimit before;
    ::getrlimit(RLIMIT_NOFILE, &before);
    const rlimit none{0, before.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &none);
    EXPECT_FALSE(SocketPortProbe().canBind(port));
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_TRUE(SocketPortProbe().canBind(port));
}

} // namespace
} // namespace tarne::test
