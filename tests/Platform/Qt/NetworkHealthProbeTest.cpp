#include "NetworkHealthProbe.h"

#include <QEventLoop>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

/// A server that answers every request with the same bytes, and then keeps or closes the line.
class NetworkHealthProbeTest : public testing::Test {
protected:
    NetworkHealthProbeTest() {
        server.listen(QHostAddress::LocalHost);
        QObject::connect(&server, &QTcpServer::newConnection, &server, [this] {
            auto *socket = server.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                requests += socket->readAll();
                socket->write(answer);
                if (closes)
                    socket->disconnectFromHost();
            });
            QObject::connect(socket, &QTcpSocket::disconnected, socket,
                             [this] { ++disconnections; });
        });
    }

    HealthProbe::Reply probe(const QString &address) {
        std::optional<HealthProbe::Reply> reply;
        health.get(address, [&](const auto &got) { reply = got; });
        wait([&] { return reply.has_value(); });
        return reply.value_or(HealthProbe::Failure{u"no answer in the test's time"_s});
    }
    HealthProbe::Reply probe() {
        return probe(u"http://localhost:%1/health"_s.arg(server.serverPort()));
    }

    static void wait(const std::function<bool()> &condition) {
        QEventLoop loop;
        QTimer poll;
        QTimer limit;
        QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
            if (condition())
                loop.quit();
        });
        QObject::connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
        poll.start(1ms);
        limit.start(20s);
        loop.exec();
    }

    static QString failure(const HealthProbe::Reply &reply) {
        const auto *failed = std::get_if<HealthProbe::Failure>(&reply);
        return failed ? failed->description : QString();
    }

    QTcpServer server;
    QByteArray answer = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok";
    QByteArray requests;
    bool closes = false;
    int disconnections = 0;
    NetworkHealthProbe health{500ms};
};

TEST_F(NetworkHealthProbeTest, AnAnswersStatusIsTheReply) {
    EXPECT_EQ(std::get<int>(probe()), 200);
    EXPECT_TRUE(requests.startsWith("GET /health HTTP/1.1\r\n"));
}

TEST_F(NetworkHealthProbeTest, SendsNoHeaderOfOurs) {
    probe();
    QStringList names;
    for (const QByteArray &line : requests.split('\n').sliced(1)) {
        if (const auto colon = line.indexOf(':'); colon > 0)
            names += QString::fromLatin1(line.first(colon));
    }
    // These are the transport's own.
    EXPECT_EQ(names, QStringList({u"Host"_s, u"Content-Length"_s, u"Connection"_s,
                                  u"Accept-Encoding"_s, u"Accept-Language"_s, u"User-Agent"_s}));
    EXPECT_TRUE(requests.contains("\r\nUser-Agent: Mozilla/5.0\r\n"));
}

TEST_F(NetworkHealthProbeTest, IsPatientForAMinute) {
    EXPECT_EQ(NetworkHealthProbe::defaultIdleLimit, 60s);
    answer.clear();
    bool hasAnswered = false;
    NetworkHealthProbe patient;
    patient.get(u"http://localhost:%1/health"_s.arg(server.serverPort()),
                [&](const HealthProbe::Reply &) { hasAnswered = true; });
    EXPECT_EQ(failure(probe()), u"The request timed out."_s) << "where it was told half a second";
    EXPECT_FALSE(hasAnswered);
}

TEST_F(NetworkHealthProbeTest, AnErrorStatusIsAnAnswerToo) {
    for (const QByteArray status : {"404", "500", "503"}) {
        answer = "HTTP/1.1 " + status + " X\r\nContent-Length: 0\r\n\r\n";
        EXPECT_EQ(std::get<int>(probe()), status.toInt());
    }
}

TEST_F(NetworkHealthProbeTest, AnEndlessBodyIsNotReadOn) {
    answer = "HTTP/1.1 200 OK\r\n\r\nbegun and never ended";
    EXPECT_EQ(std::get<int>(probe()), 200);
}

TEST_F(NetworkHealthProbeTest, AClosedPortIsAFailure) {
    server.close();
    EXPECT_EQ(failure(probe(u"http://localhost:1/health"_s)),
              u"The server refused the connection."_s);
}

TEST_F(NetworkHealthProbeTest, AServerThatSaysNothingIsAFailureAfterTheLimit) {
    answer.clear();
    EXPECT_EQ(failure(probe()), u"The request timed out."_s);
}

TEST_F(NetworkHealthProbeTest, AServerThatClosesWithoutAnAnswerIsAFailure) {
    answer.clear();
    closes = true;
    EXPECT_EQ(failure(probe()), u"The connection was lost before the answer was complete."_s);
}

TEST_F(NetworkHealthProbeTest, OneProbeIsOneGetHoweverEarlyTheServerCloses) {
    closes = true;
    for (const QByteArray &beginning :
         {QByteArray(), QByteArray("HTTP"), QByteArray("HTTP/1.1 200 OK\r\nContent-Le")}) {
        requests.clear();
        answer = beginning;
        EXPECT_FALSE(failure(probe()).isEmpty()) << beginning.constData();
        EXPECT_EQ(requests.count("GET "), 1) << beginning.constData();
    }
}

TEST_F(NetworkHealthProbeTest, FollowsARedirectWithinTheServer) {
    const QByteArray ok = answer;
    answer = "HTTP/1.1 302 Found\r\nLocation: /elsewhere\r\nConnection: close\r\n"
             "Content-Length: 0\r\n\r\n";
    closes = true;
    QObject::connect(&server, &QTcpServer::newConnection, &server, [this, ok] {
        if (requests.contains("GET /health"))
            answer = ok;
    });
    EXPECT_EQ(std::get<int>(probe()), 200);
    EXPECT_EQ(requests.count("GET /elsewhere "), 1);
    EXPECT_EQ(requests.count("GET "), 2);
}

TEST_F(NetworkHealthProbeTest, AnAnswerThatIsNoHttpIsAFailure) {
    answer = "hello";
    closes = true;
    EXPECT_FALSE(failure(probe()).isEmpty());
}

TEST_F(NetworkHealthProbeTest, ARedirectToAnotherOriginIsAFailure) {
    answer = "HTTP/1.1 302 Found\r\nLocation: http://127.0.0.1:1/\r\nContent-Length: 0\r\n\r\n";
    EXPECT_EQ(failure(probe()), u"The server sent the request elsewhere."_s);
}

TEST_F(NetworkHealthProbeTest, APortThatDoesNotExistIsAFailure) {
    EXPECT_FALSE(failure(probe(u"http://localhost:70000/health"_s)).isEmpty());
    EXPECT_FALSE(failure(probe(u"http://localhost:-1/health"_s)).isEmpty());
}

TEST_F(NetworkHealthProbeTest, KeepsNoConnectionBehindAnAnswer) {
    probe();
    wait([this] { return disconnections > 0; });
    EXPECT_EQ(disconnections, 1);
}

} // namespace
} // namespace tarne::test
