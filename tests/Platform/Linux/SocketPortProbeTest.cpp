#include "SocketPortProbe.h"

#include <QTcpServer>

#include <gtest/gtest.h>

namespace tarne {
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

} // namespace
} // namespace tarne
