// The goals API as its owner would start it: on port 8080, so in a network of its own.

#include "Box.h"
#include "LocalHTTPServer.h"
#include "SessionFixture.h"
#include "UuidText.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTcpServer>
#include <QThread>

#include <cstdio>
#include <cstdlib>

#include <linux/close_range.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using testing::ElementsAre;

/// What curl shows of one exchange.
struct Exchange {
    int status = 0;
    QByteArray head;
    QByteArray body;

    QJsonObject json() const { return QJsonDocument::fromJson(body).object(); }
};

class GoalsAPI : public test::SessionTest {
protected:
    void SetUp() override {
        if (!test::isBoxed()) {
            std::fputs("not in a box of its own: nothing was run\n", stderr);
            std::_Exit(1);
        }
    }

    void startServer() {
        controller();
        log.takeLines();
        controller().setupHTTPServer();
        ASSERT_TRUE(waitForLine(u"🌐 TARNE HTTP Server started on port 8080"_s));
    }

    bool waitForLine(const QString &line) {
        QElapsedTimer timer;
        timer.start();
        while (!log.lines().contains(line)) {
            if (timer.elapsed() > 20'000)
                return false;
            QThread::usleep(200);
        }
        return true;
    }

    /// As the program's own children: a client that inherits the listener would keep it open.
    static void keepSocketsFrom(QProcess &client) {
        client.setChildProcessModifier([] { ::close_range(3, ~0U, CLOSE_RANGE_CLOEXEC); });
    }

    static Exchange curl(const QStringList &arguments) {
        QProcess tool;
        keepSocketsFrom(tool);
        tool.start(u"/usr/bin/curl"_s,
                   QStringList{u"--silent"_s, u"--include"_s, u"--max-time"_s, u"20"_s} +
                       arguments);
        EXPECT_TRUE(tool.waitForFinished());
        EXPECT_EQ(tool.exitCode(), 0) << tool.readAllStandardError().constData();
        const QByteArray all = tool.readAllStandardOutput();
        const auto end = all.indexOf("\r\n\r\n");
        return {all.mid(9, 3).toInt(), all.left(end), all.mid(end + 4)};
    }

    const QString address = u"http://localhost:8080"_s;
};

TEST_F(GoalsAPI, IsNotStartedByTheControllersConstruction) {
    EXPECT_FALSE(controller().httpServer());
    QTcpServer other;
    EXPECT_TRUE(other.listen(QHostAddress::Any, 8080));
}

TEST_F(GoalsAPI, TheAddressIsLoggedOnceTheServerWasStarted) {
    startServer();
    const QString started = u"🌐 TARNE HTTP Server started on port 8080"_s;
    const QString available = u"📡 TARNE Goals API available at: http://localhost:8080/goals"_s;
    QStringList lines = log.lines().filter(u"TARNE"_s);
    lines.sort();
    EXPECT_THAT(lines, ElementsAre(started, available)) << "in the order of two threads";
    EXPECT_EQ(controller().httpServer()->getPort(), 8080);
}

TEST_F(GoalsAPI, TheLoggedPortIsTheOneAskedForAlsoWhereItIsTaken) {
    QTcpServer other;
    ASSERT_TRUE(other.listen(QHostAddress::Any, 8080));
    controller().setupHTTPServer();
    ASSERT_TRUE(waitForLine(u"❌ TARNE HTTP Server failed on port 8080: Address already in use"_s));
    EXPECT_TRUE(waitForLine(u"📡 TARNE Goals API available at: http://localhost:8080/goals"_s));
}

TEST_F(GoalsAPI, AnswersNoSessionWithFiveKeys) {
    startServer();
    const Exchange answer = curl({address + u"/goals"_s});
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.json(), (QJsonObject{{u"active"_s, false},
                                          {u"goals"_s, u""_s},
                                          {u"sessionId"_s, u""_s},
                                          {u"timeRemaining"_s, 0},
                                          {u"duration"_s, 0}}));
}

TEST_F(GoalsAPI, AnswersTheRunningSession) {
    start(u"Write \"report\", Überblick 📝"_s, 300);
    pass(100);
    startServer();
    const FocusSession &session = *controller().currentSession();
    EXPECT_EQ(curl({address + u"/goals"_s}).json(),
              (QJsonObject{{u"active"_s, true},
                           {u"goals"_s, u"Write \"report\", Überblick 📝"_s},
                           {u"sessionId"_s, uuidString(session.id)},
                           {u"timeRemaining"_s, 200},
                           {u"duration"_s, 300},
                           {u"progress"_s, 200.0 / 300.0},
                           {u"startTime"_s, session.startTime.secondsSince1970()}}));
}

TEST_F(GoalsAPI, AnswersCurlOnEveryRoute) {
    startServer();
    EXPECT_EQ(curl({address + u"/health"_s}).json()[u"service"_s], u"TARNE Local API"_s);
    const Exchange preflight = curl({u"--request"_s, u"OPTIONS"_s, address + u"/goals"_s});
    EXPECT_EQ(preflight.status, 200);
    EXPECT_TRUE(preflight.head.contains("Access-Control-Max-Age: 86400"));
    EXPECT_EQ(preflight.body, "");
    const Exchange post = curl({u"--data"_s, u"x"_s, address + u"/goals"_s});
    EXPECT_EQ(post.status, 404);
    EXPECT_EQ(post.body, "Not Found");
    EXPECT_EQ(curl({address + u"/goals?x=1"_s}).status, 404);
    EXPECT_EQ(curl({u"--ipv6"_s, address + u"/goals"_s}).status, 200);
    // A body larger than one receive: curl waits for no answer before it sends it.
    EXPECT_EQ(curl({u"--data"_s, QString(100'000, u'x'), address + u"/goals"_s}).status, 404);
}

TEST_F(GoalsAPI, AnswersNoSessionOnceItsOwnerIsGone) {
    start(u"Review"_s, 300);
    startServer();
    const auto source = controller().httpServer()->getCurrentSessionData;
    EXPECT_EQ(source().value(u"active"_s), true);
    crash();
    EXPECT_EQ(source(),
              (QVariantMap{{u"active"_s, false}, {u"goals"_s, u""_s}, {u"sessionId"_s, u""_s}}));
}

TEST_F(GoalsAPI, TheOwnerCanEndWithRequestsInFlight) {
    start(u"Review"_s, 300);
    startServer();
    std::vector<std::unique_ptr<QProcess>> clients;
    for (int i = 0; i < 8; ++i) {
        clients.push_back(std::make_unique<QProcess>());
        keepSocketsFrom(*clients.back());
        clients.back()->start(u"/usr/bin/curl"_s, {u"--silent"_s, u"--max-time"_s, u"20"_s,
                                                   address + u"/goals#[1-50]"_s});
    }
    ASSERT_TRUE(clients.front()->waitForReadyRead());
    // Their requests are served by the owner itself.
    EXPECT_THAT(clients.front()->readAllStandardOutput().toStdString(),
                testing::HasSubstr("Review"));
    crash();
    for (const auto &client : clients)
        EXPECT_TRUE(client->waitForFinished());
}

} // namespace
} // namespace tarne::test
