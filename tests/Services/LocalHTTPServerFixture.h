#pragma once

#include "LocalHTTPServer.h"
#include "ManualTime.h"
#include "RecordingLog.h"

#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>

#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>

namespace tarne::test {

/// The goals API on a free port, and the words of its clients.
class LocalHTTPServerTest : public testing::Test {
protected:
    static constexpr int patience = 20'000; ///< In milliseconds.

    static bool waitUntil(const std::function<bool()> &condition, int limit = patience) {
        QElapsedTimer timer;
        timer.start();
        while (!condition()) {
            if (timer.elapsed() > limit)
                return false;
            QThread::usleep(200);
        }
        return true;
    }

    static quint16 freePort() {
        QTcpServer probe;
        EXPECT_TRUE(probe.listen(QHostAddress::Any));
        return probe.serverPort();
    }

    void start() {
        server->start();
        ASSERT_TRUE(waitForLine(QStringLiteral("started on port")));
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
    /// Connects a socket and sends a request; false where nobody listens any more.
    [[nodiscard]] bool request(int client) const {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const auto size = static_cast<std::size_t>(goals.size());
        return ::connect(client, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0 &&
               ::send(client, goals.constData(), size, MSG_NOSIGNAL) == goals.size();
    }
    /// Ends the connection in a way that reaches the server as an error.
    static void reset(QTcpSocket &socket) {
        const linger atOnce{1, 0};
        ::setsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER, &atOnce,
                     sizeof atOnce);
        socket.abort();
    }
    static void halfClose(QTcpSocket &socket) {
        ::shutdown(static_cast<int>(socket.socketDescriptor()), SHUT_WR);
    }

    const QByteArray goals = "GET /goals HTTP/1.1\r\nHost: localhost\r\n\r\n";
    const quint16 port = freePort();
    test::ManualTime time;
    test::RecordingLog log;
    std::unique_ptr<LocalHTTPServer> server = std::make_unique<LocalHTTPServer>(time, log, port);
};

/// While it lives, the process can open no more than so many descriptors.
class DescriptorLimit {
public:
    explicit DescriptorLimit(rlim_t count) {
        ::getrlimit(RLIMIT_NOFILE, &m_before);
        const rlimit limit{std::min(count, m_before.rlim_max), m_before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
    ~DescriptorLimit() { ::setrlimit(RLIMIT_NOFILE, &m_before); }
    DescriptorLimit(const DescriptorLimit &) = delete;
    DescriptorLimit &operator=(const DescriptorLimit &) = delete;

private:
    rlimit m_before;
};

} // namespace tarne::test
