#include "LocalHTTPServerFixture.h"

#include <atomic>
#include <ctime>

#include <poll.h>
#include <sys/prctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

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

TEST_F(LocalHTTPServerTest, ALargeAnswerArrivesWhole) {
    const QString large(20'000'000, u'g');
    server->getCurrentSessionData = [&] { return QVariantMap{{u"goals"_s, large}}; };
    start();
    const QByteArray response = ask(goals);
    EXPECT_TRUE(response.contains("Content-Length: 20000012\r\n"));
    EXPECT_TRUE(response.endsWith("g\"}"));
    EXPECT_EQ(response.size() - response.indexOf("\r\n\r\n") - 4, 20'000'012);
}

TEST_F(LocalHTTPServerTest, RequestsAreHandledOneAtATime) {
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    server->getCurrentSessionData = [&] {
        most = std::max(most.load(), ++inside);
        // Time enough for another one to come in beside it.
        waitUntil([&] { return inside > 1; }, 10);
        --inside;
        return QVariantMap{};
    };
    start();
    std::vector<std::unique_ptr<QTcpSocket>> clients;
    for (int i = 0; i < 8; ++i) {
        clients.push_back(connect());
        send(*clients.back(), goals);
    }
    for (const auto &client : clients)
        EXPECT_TRUE(readToEnd(*client).startsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_EQ(most, 1);
}

TEST_F(LocalHTTPServerTest, APieceThatComesDuringTheAnswerIsARequestOfItsOwnWithoutOne) {
    std::atomic<int> calls = 0;
    const QString large(20'000'000, u'g');
    server->getCurrentSessionData = [&] {
        ++calls;
        return QVariantMap{{u"goals"_s, large}};
    };
    start();
    const auto socket = connect();
    send(*socket, goals);
    ASSERT_TRUE(socket->waitForReadyRead(patience));
    send(*socket, goals);
    EXPECT_TRUE(waitUntil([&] { return calls == 2; }));
    const QByteArray response = readToEnd(*socket);
    EXPECT_EQ(response.count("HTTP/1.1 "), 1);
    EXPECT_EQ(response.size() - response.indexOf("\r\n\r\n") - 4, 20'000'012);
}

TEST_F(LocalHTTPServerTest, AConnectionThatWaitsForADescriptorCostsNoWork) {
    start();
    const int client = ::socket(AF_INET, SOCK_STREAM, 0);
    const DescriptorLimit one(1);
    ASSERT_TRUE(request(client));
    const std::clock_t before = std::clock(); // The processor's time of all threads.
    QThread::msleep(300);
    EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 10);
    ::close(client);
}

TEST_F(LocalHTTPServerTest, AConnectionThatComesWhileNoDescriptorIsFreeIsAnsweredOnceOneIs) {
    start();
    const int client = ::socket(AF_INET, SOCK_STREAM, 0);
    {
        const DescriptorLimit one(1); // The least that poll takes.
        ASSERT_TRUE(request(client));
        pollfd answered{client, POLLIN, 0};
        EXPECT_EQ(::poll(&answered, 1, 20), 0);
    }
    QByteArray start(15, '\0');
    EXPECT_EQ(::recv(client, start.data(), static_cast<size_t>(start.size()), MSG_WAITALL), 15);
    EXPECT_EQ(start, "HTTP/1.1 200 OK");
    ::close(client);
}

} // namespace
} // namespace tarne::test
