#include "AppcastUpdaterController.h"

#include "EventLoop.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using namespace test;
using Kind = UpdateCheckResult::Kind;

QByteArray feed(const QByteArray &version) {
    return "<rss xmlns:u=\"urn:u\"><channel><item><u:version>" + version +
           "</u:version><link>https://example.org/get</link></item></channel></rss>";
}

QByteArray response(const QByteArray &body, const QByteArray &status = "200 OK",
                    const QByteArray &headers = {}) {
    return "HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\nConnection: close\r\n" + headers + "\r\n" + body;
}

/// Answers each request on a loopback port with the next of its responses.
class FeedServer {
public:
    FeedServer() {
        EXPECT_TRUE(m_server.listen(QHostAddress::LocalHost));
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
            QTcpSocket *socket = m_server.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, socket,
                             [this, socket] { answer(*socket); });
        });
    }

    QUrl url() const { return QUrl(u"http://127.0.0.1:%1/feed"_s.arg(m_server.serverPort())); }

    std::vector<QByteArray> responses;
    int requests = 0;

private:
    void answer(QTcpSocket &socket) {
        if (!socket.peek(65536).endsWith("\r\n\r\n"))
            return;
        socket.readAll();
        ++requests;
        if (responses.empty())
            return; // Hangs.
        socket.write(responses.front());
        responses.erase(responses.begin());
        socket.disconnectFromHost();
    }

    QTcpServer m_server;
};

class AnAppcastUpdater : public testing::Test {
protected:
    /// The answer of a check by a controller whose look at the start has been answered.
    UpdateCheckResult checkWith(const QByteArray &response, const QString &version = u"1.0.0"_s) {
        m_server.responses = {response, response};
        return check(m_server.url(), version);
    }

    static UpdateCheckResult check(const QUrl &url, const QString &version = u"1.0.0"_s) {
        AppcastUpdaterController updater(url, version);
        std::optional<UpdateCheckResult> result;
        updater.checkForUpdates([&](const auto &r) { result = r; });
        EXPECT_EQ(result, std::nullopt); // Never from within the call.
        EXPECT_TRUE(serveUntil([&] { return result.has_value(); }));
        return result.value_or(UpdateCheckResult{});
    }

    FeedServer m_server;
};

TEST_F(AnAppcastUpdater, WithoutAFeedACheckSaysSo) {
    EXPECT_EQ(check({}), (UpdateCheckResult{Kind::NoFeed, {}, {}, {}}));
}

TEST_F(AnAppcastUpdater, ThisBuildHasNoFeedUnlessItIsToldOne) {
    EXPECT_EQ(AppcastUpdaterController::builtInFeed(), QUrl());
}

TEST_F(AnAppcastUpdater, TellsANewerVersionWithItsPage) {
    EXPECT_EQ(checkWith(response(feed("1.0.1"))),
              (UpdateCheckResult{
                  Kind::NewerVersion, u"1.0.1"_s, QUrl(u"https://example.org/get"_s), {}}));
}

TEST_F(AnAppcastUpdater, IsUpToDateWithTheSameOrAnOlderVersion) {
    for (const char *version : {"1.0", "0.9"})
        EXPECT_EQ(checkWith(response(feed(version))).kind, Kind::UpToDate) << version;
}

TEST_F(AnAppcastUpdater, LooksOnceByItselfWhenItIsConstructed) {
    m_server.responses = {response(feed("2.0"))};
    std::optional<UpdateCheckResult> found;
    const AppcastUpdaterController updater(m_server.url(), u"1.0"_s,
                                           [&](const auto &r) { found = r; });
    EXPECT_TRUE(serveUntil([&] { return found.has_value(); }));
    EXPECT_EQ(found->version, u"2.0"_s);
    EXPECT_EQ(m_server.requests, 1);
}

TEST_F(AnAppcastUpdater, ChecksThatMeetShareOneLook) {
    m_server.responses = {response(feed("2.0"))};
    AppcastUpdaterController updater(m_server.url(), u"1.0"_s);
    int answers = 0;
    updater.checkForUpdates([&](const auto &) { ++answers; });
    updater.checkForUpdates([&](const auto &) { ++answers; });
    EXPECT_TRUE(serveUntil([&] { return answers == 2; }));
    EXPECT_EQ(m_server.requests, 1);
}

TEST_F(AnAppcastUpdater, EveryLaterCheckLooksAnew) {
    m_server.responses = {response(feed("1.0")), response(feed("2.0"))};
    AppcastUpdaterController updater(m_server.url(), u"1.0"_s);
    std::vector<Kind> kinds;
    const auto note = [&](const UpdateCheckResult &r) { kinds.push_back(r.kind); };
    updater.checkForUpdates(note);
    EXPECT_TRUE(serveUntil([&] { return kinds.size() == 1; }));
    updater.checkForUpdates(note);
    EXPECT_TRUE(serveUntil([&] { return kinds.size() == 2; }));
    EXPECT_THAT(kinds, testing::ElementsAre(Kind::UpToDate, Kind::NewerVersion));
}

TEST_F(AnAppcastUpdater, AStatusBeyondSuccessIsAFailure) {
    const auto result = checkWith(response(feed("2.0"), "404 Not Found"));
    EXPECT_EQ(result.kind, Kind::Failure);
    EXPECT_EQ(result.failure, u"The update server answered with status 404."_s);
}

TEST_F(AnAppcastUpdater, AFeedThatCannotBeReadIsAFailure) {
    EXPECT_EQ(checkWith(response("<html/>")).failure, u"The update feed could not be read."_s);
}

TEST_F(AnAppcastUpdater, ARedirectToAnotherOriginIsAFailure) {
    FeedServer other;
    other.responses = {response(feed("2.0"))};
    const auto result =
        checkWith(response({}, "302 Found", "Location: " + other.url().toEncoded() + "\r\n"));
    EXPECT_EQ(result.kind, Kind::Failure);
    EXPECT_EQ(other.requests, 0);
}

TEST_F(AnAppcastUpdater, ARedirectOnTheSameOriginIsFollowed) {
    m_server.responses = {response({}, "302 Found", "Location: /elsewhere\r\n"),
                          response(feed("2.0"))};
    EXPECT_EQ(check(m_server.url()).kind, Kind::NewerVersion);
}

TEST_F(AnAppcastUpdater, AClosedPortIsAFailure) {
    const QUrl closed = FeedServer().url();
    EXPECT_EQ(check(closed).kind, Kind::Failure);
}

TEST_F(AnAppcastUpdater, ABodyBeyondItsCapIsAFailure) {
    const auto result = checkWith(response(QByteArray(64 * 1024 * 1024 + 1, ' ')));
    EXPECT_EQ(result.failure, u"The update feed is too large."_s);
}

TEST_F(AnAppcastUpdater, AFeedOverAnOpenNetworkIsNotAsked) {
    for (const QString &address : {u"http://example.org/feed"_s, u"ftp://127.0.0.1/feed"_s,
                                   u"file:///tmp/feed"_s, u"feed"_s})
        EXPECT_EQ(check(QUrl(address)).failure, u"The update feed's address is not a secure one."_s)
            << qPrintable(address);
}

TEST_F(AnAppcastUpdater, AnUpdaterThatGoesAwayDuringALookAnswersNobody) {
    bool answered = false;
    {
        AppcastUpdaterController updater(m_server.url(), u"1.0"_s);
        updater.checkForUpdates([&](const auto &) { answered = true; });
        EXPECT_TRUE(serveUntil([&] { return m_server.requests == 1; }));
    }
    QCoreApplication::processEvents();
    EXPECT_FALSE(answered);
}

} // namespace
} // namespace tarne::test
