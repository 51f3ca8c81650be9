#include "NetworkHTTPClient.h"
#include "GeminiStandIn.h"

#include <QDeadlineTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QScopeGuard>
#include <QSemaphore>
#include <QThread>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace tarne::test {

void PrintTo(const HTTPResult &result, std::ostream *out) {
    if (const auto *response = std::get_if<HTTPResponse>(&result))
        *out << "status " << response->status << ", " << response->body.left(200).constData();
    else
        *out << qPrintable(std::get<TransportError>(result).localizedDescription);
}

namespace {

const QString path = u"/v1beta/models/gemini-1.5-flash-latest:generateContent?key="_s;

/// One stand-in for all tests of the program; what it is asked for depends on the key alone.
class NetworkHTTPClientTest : public testing::Test {
protected:
    static void SetUpTestSuite() { standIn = std::make_unique<test::GeminiStandIn>(); }
    static void TearDownTestSuite() { standIn.reset(); }

    void SetUp() override { standIn->takeRequests().clear(); }

    HTTPResult postTo(const QString &address, NetworkHTTPClient::Limits limits = {10s}) {
        return postWith(client(limits), address);
    }

    static std::unique_ptr<NetworkHTTPClient> client(NetworkHTTPClient::Limits limits = {10s}) {
        return std::make_unique<NetworkHTTPClient>(
            limits, QSslCertificate::fromPath(standIn->authorityFile(), QSsl::Pem));
    }

    /// Waits for the answer, and for the client's end, without an event loop of this thread's.
    static HTTPResult postWith(std::unique_ptr<NetworkHTTPClient> client, const QString &address) {
        const auto outcome = std::make_shared<Outcome>();
        client->post({QUrl(address), "application/json", R"({"a":1})"}, [outcome](HTTPResult r) {
            outcome->result = std::move(r);
            outcome->thread = QThread::currentThread();
            outcome->completions.release();
        });
        EXPECT_TRUE(outcome->completions.tryAcquire(1, 20s));
        client.reset();
        EXPECT_EQ(outcome->completions.available(), 0) << "completed twice";
        EXPECT_NE(outcome->thread, QThread::currentThread());
        return outcome->result;
    }

    HTTPResult post(const QString &key, NetworkHTTPClient::Limits limits = {10s}) {
        return postTo(standIn->endpoint() + path + key, limits);
    }

    static QString transportError(const HTTPResult &result) {
        const auto *error = std::get_if<TransportError>(&result);
        return error ? error->localizedDescription : u"(an answer)"_s;
    }

    struct Outcome {
        HTTPResult result;
        const QThread *thread = nullptr; ///< Where the completion ran.
        QSemaphore completions;
    };

    static std::unique_ptr<test::GeminiStandIn> standIn;
};

std::unique_ptr<test::GeminiStandIn> NetworkHTTPClientTest::standIn;

TEST_F(NetworkHTTPClientTest, SendsOnePostAsItStands) {
    const auto response = std::get<HTTPResponse>(post(u"a+b&c=d%2Fe"_s));
    EXPECT_EQ(response.status, 200);
    EXPECT_TRUE(response.body.contains("You finished what you set out to do."));

    const QList<QJsonObject> requests = standIn->takeRequests();
    ASSERT_EQ(requests.size(), 1);
    EXPECT_EQ(requests[0][u"method"], u"POST"_s);
    EXPECT_EQ(requests[0][u"target"], path + u"a+b&c=d%2Fe"_s);
    EXPECT_EQ(requests[0][u"body"], u"{\"a\":1}"_s);
    QStringList names;
    for (const QJsonValue &header : requests[0][u"headers"].toArray()) {
        names += header.toArray()[0].toString();
        if (names.last() == u"Content-Type"_s) {
            EXPECT_EQ(header.toArray()[1], u"application/json"_s);
        }
    }
    EXPECT_EQ(names.count(u"Content-Type"_s), 1);
    // The rest is the transport's own.
    names.removeOne(u"Content-Type"_s);
    EXPECT_EQ(names, QStringList({u"Host"_s, u"Content-Length"_s, u"Connection"_s,
                                  u"Accept-Encoding"_s, u"Accept-Language"_s, u"User-Agent"_s}));
}

// What reads the key takes an escape and what it stands for as the same.
TEST_F(NetworkHTTPClientTest, SendsTheEscapesOfAKeyInTheirNormalForm) {
    post(u"a%41b%7Ec%2fd%2Fe"_s);
    const QList<QJsonObject> requests = standIn->takeRequests();
    ASSERT_EQ(requests.size(), 1);
    EXPECT_EQ(requests[0][u"target"], path + u"aAb~c%2Fd%2Fe"_s);
}

class AnswerWithAStatus : public NetworkHTTPClientTest,
                          public testing::WithParamInterface<const char *> {};

TEST_P(AnswerWithAStatus, IsAnAnswerWithItsBody) {
    const QString key = QString::fromLatin1(GetParam());
    const HTTPResult result = post(key);
    ASSERT_TRUE(std::holds_alternative<HTTPResponse>(result)) << qPrintable(transportError(result));
    const auto &response = std::get<HTTPResponse>(result);
    EXPECT_EQ(response.status, key.right(3).toInt());
    EXPECT_TRUE(response.body.contains("told with " + key.right(3).toLatin1()) ||
                response.body == "<html><body>Bad Gateway</body></html>")
        << response.body.constData();
    EXPECT_EQ(standIn->takeRequests().size(), 1) << "sent again";
}

INSTANTIATE_TEST_SUITE_P(NetworkHTTPClient, AnswerWithAStatus,
                         testing::Values("json400", "json401", "basic401", "bearer401", "digest401",
                                         "ntlm401", "negotiate401", "json403", "json404", "json429",
                                         "json500", "json501", "json503", "html200", "html400",
                                         "html401", "html403", "html404", "html429", "html500",
                                         "html501", "html503"));

TEST_F(NetworkHTTPClientTest, AnAnswerMayHaveNoBody) {
    EXPECT_EQ(std::get<HTTPResponse>(post(u"empty"_s)).body, QByteArray());
    EXPECT_EQ(std::get<HTTPResponse>(post(u"nocontent"_s)).status, 204);
    EXPECT_EQ(std::get<HTTPResponse>(post(u"empty500"_s)).status, 500);
}

TEST_F(NetworkHTTPClientTest, TakesEveryFormOfBody) {
    const QByteArray body = std::get<HTTPResponse>(post(u"good"_s)).body;
    EXPECT_EQ(std::get<HTTPResponse>(post(u"gzip"_s)).body, body);
    EXPECT_EQ(std::get<HTTPResponse>(post(u"chunks"_s)).body, body);
    EXPECT_EQ(std::get<HTTPResponse>(post(u"unclosed"_s)).body, body);
}

TEST_F(NetworkHTTPClientTest, TakesTwentyMegabytes) {
    EXPECT_GT(std::get<HTTPResponse>(post(u"big"_s)).body.size(), 20'000'000);
}

TEST_F(NetworkHTTPClientTest, WaitsForAnAnswerThatTricklesLongerThanASilenceMayLast) {
    EXPECT_TRUE(std::get<HTTPResponse>(post(u"trickle"_s, {500ms})).body.contains("slow"));
}

TEST_F(NetworkHTTPClientTest, ASilentPeerIsGivenUp) {
    const QString timedOut = u"The request timed out."_s;
    EXPECT_EQ(transportError(post(u"stall"_s, {300ms})), timedOut);
    EXPECT_EQ(transportError(postTo(standIn->endpoint(u"silent"_s) + path, {300ms})), timedOut);
}

TEST_F(NetworkHTTPClientTest, AnEndlessAnswerIsGivenUp) {
    EXPECT_EQ(transportError(post(u"endless"_s, {10s, 1'000'000})), u"The answer is too large."_s);
}

TEST_F(NetworkHTTPClientTest, ASmallAnswerThatUnpacksToAHugeOneIsGivenUp) {
    const HTTPResult result = post(u"bomb"_s, {10s, 1'000'000});
    EXPECT_TRUE(std::holds_alternative<TransportError>(result));
}

TEST_F(NetworkHTTPClientTest, HeadersWithoutEndAreGivenUpHoweverFastTheyCome) {
    EXPECT_EQ(transportError(post(u"headers"_s, {500ms})), u"The request timed out."_s);
}

TEST_F(NetworkHTTPClientTest, ALostConnectionIsNoAnswerAndSendsNothingAgain) {
    for (const QString &key : {u"cut"_s, u"cuthead"_s, u"cutchunk"_s, u"hangup"_s}) {
        EXPECT_EQ(transportError(post(key)),
                  u"The connection was lost before the answer was complete."_s)
            << qPrintable(key);
        EXPECT_EQ(standIn->takeRequests().size(), 1) << qPrintable(key);
    }
}

TEST_F(NetworkHTTPClientTest, AConnectionThatIsLostBehindARedirectSendsNothingAgain) {
    EXPECT_EQ(transportError(post(u"againlost"_s)),
              u"The connection was lost before the answer was complete."_s);
    EXPECT_EQ(standIn->takeRequests().size(), 2) << "the POST, and the GET that it became";
}

TEST_F(NetworkHTTPClientTest, WhatIsNoHttpIsNoAnswer) {
    EXPECT_TRUE(std::holds_alternative<TransportError>(post(u"nohttp"_s)));
}

TEST_F(NetworkHTTPClientTest, ARedirectToAnotherOriginIsNotFollowed) {
    EXPECT_EQ(transportError(post(u"away"_s)), u"The server sent the request elsewhere."_s);
    const QList<QJsonObject> requests = standIn->takeRequests();
    ASSERT_EQ(requests.size(), 1);
    EXPECT_EQ(requests[0][u"listener"], u"main"_s);
}

TEST_F(NetworkHTTPClientTest, ARedirectWithinTheOriginIsFollowed) {
    for (const QString &key : {u"again302"_s, u"again307"_s}) {
        EXPECT_TRUE(std::holds_alternative<HTTPResponse>(post(key))) << qPrintable(key);
        const QList<QJsonObject> requests = standIn->takeRequests();
        ASSERT_EQ(requests.size(), 2) << qPrintable(key);
        EXPECT_EQ(requests[1][u"method"], key == u"again307" ? u"POST"_s : u"GET"_s);
        EXPECT_EQ(requests[1][u"body"], key == u"again307" ? u"{\"a\":1}"_s : QString());
    }
}

TEST_F(NetworkHTTPClientTest, RedirectsWithoutEndAreGivenUp) {
    EXPECT_EQ(transportError(post(u"round"_s)), u"The server sent the request elsewhere."_s);
    EXPECT_EQ(standIn->takeRequests().size(), 21);
}

TEST_F(NetworkHTTPClientTest, NoCertificateErrorIsIgnored) {
    for (const QString &listener : {u"untrusted"_s, u"expired"_s, u"misnamed"_s, u"tls11"_s}) {
        EXPECT_EQ(transportError(postTo(standIn->endpoint(listener) + path + u"good"_s)),
                  u"A secure connection to the server could not be made."_s)
            << qPrintable(listener);
        EXPECT_TRUE(standIn->takeRequests().isEmpty()) << qPrintable(listener);
    }
}

TEST_F(NetworkHTTPClientTest, TheSystemsStoreDoesNotTrustAStranger) {
    EXPECT_EQ(transportError(postWith(std::make_unique<NetworkHTTPClient>(),
                                      standIn->endpoint() + path + u"good"_s)),
              u"A secure connection to the server could not be made."_s);
}

TEST_F(NetworkHTTPClientTest, AServerThatIsNotThereIsTold) {
    EXPECT_EQ(transportError(postTo(standIn->endpoint(u"refused"_s) + path)),
              u"The server refused the connection."_s);
    // A name that no name server is asked for: one part of it is too long.
    EXPECT_EQ(transportError(postTo(u"https://"_s + QString(64, u'x') + u".example/"_s)),
              u"The server could not be found. Is this computer online?"_s);
}

TEST_F(NetworkHTTPClientTest, TheSystemsProxyIsForOtherMachinesThanThis) {
    const int nobody = QUrl(standIn->endpoint(u"refused"_s)).port();
    qputenv("https_proxy", "http://127.0.0.1:" + QByteArray::number(nobody));
    const auto restored = qScopeGuard([] { qunsetenv("https_proxy"); });
    // Looked up without the proxy, the name would not be found.
    EXPECT_EQ(transportError(postTo(u"https://gemini.example/"_s)),
              u"The network connection failed."_s);
    EXPECT_TRUE(std::holds_alternative<HTTPResponse>(post(u"good"_s)));
}

TEST_F(NetworkHTTPClientTest, NoErrorTellsTheAddress) {
    for (const QString &key : {u"cut"_s, u"hangup"_s, u"away"_s, u"nohttp"_s, u"cutchunk"_s}) {
        const QString text = transportError(post(key));
        EXPECT_FALSE(text.contains(u"key=") || text.contains(u"localhost") || text.contains(key))
            << qPrintable(text);
    }
}

TEST_F(NetworkHTTPClientTest, ARequestUnderWayIsDroppedWithTheClient) {
    std::atomic<bool> isCompleted = false;
    {
        const auto dropped = client();
        dropped->post({QUrl(standIn->endpoint() + path + u"stall"_s), "application/json", "{}"},
                      [&](const HTTPResult &) { isCompleted = true; });
        const QDeadlineTimer deadline(20s);
        while (standIn->takeRequests().isEmpty() && !deadline.hasExpired())
            std::this_thread::yield();
        EXPECT_FALSE(deadline.hasExpired());
    }
    EXPECT_FALSE(isCompleted);
}

TEST_F(NetworkHTTPClientTest, ARequestThatHasHardlyBegunIsDroppedWithTheClient) {
    std::atomic<bool> isCompleted = false;
    for (int i = 0; i < 20; ++i) {
        client()->post({QUrl(standIn->endpoint() + path + u"stall"_s), "application/json", "{}"},
                       [&](const HTTPResult &) { isCompleted = true; });
    }
    EXPECT_FALSE(isCompleted);
}

TEST_F(NetworkHTTPClientTest, IsDestroyedBehindACompletionThatRuns) {
    QSemaphore begun;
    QSemaphore mayEnd;
    std::atomic<bool> hasEnded = false;
    auto destroyed = client();
    destroyed->post({QUrl(standIn->endpoint() + path + u"good"_s), "application/json", "{}"},
                    [&](const HTTPResult &) {
                        begun.release();
                        mayEnd.acquire();
                        for (int i = 0; i < 1000; ++i)
                            std::this_thread::yield();
                        hasEnded = true;
                    });
    ASSERT_TRUE(begun.tryAcquire(1, 20s));
    mayEnd.release();
    destroyed.reset();
    EXPECT_TRUE(hasEnded);
}

TEST_F(NetworkHTTPClientTest, SeveralRequestsAreUnderWayAtOnce) {
    const auto shared = client();
    QSemaphore completions;
    for (const QString &key : {u"stall"_s, u"good"_s, u"json500"_s})
        shared->post({QUrl(standIn->endpoint() + path + key), "application/json", "{}"},
                     [&](const HTTPResult &) { completions.release(); });
    EXPECT_TRUE(completions.tryAcquire(2, 20s));
    EXPECT_EQ(completions.available(), 0);
}

TEST_F(NetworkHTTPClientTest, IsPatientForAMinuteAndTakesSixtyFourMegabytes) {
    EXPECT_EQ(NetworkHTTPClient::Limits{}.idle, 60s);
    EXPECT_EQ(NetworkHTTPClient::Limits{}.body, 64 * 1024 * 1024);
}

} // namespace
} // namespace tarne::test
