#include "GoalsResponder.h"

#include "ManualTime.h"
#include "RecordingLog.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

/// A response taken apart as a client does.
struct Response {
    QByteArray statusLine;
    std::map<QByteArray, QByteArray> headers;
    QByteArray body;

    QJsonObject json() const { return QJsonDocument::fromJson(body).object(); }
};

Response parse(const QByteArray &bytes) {
    Response response;
    const auto end = bytes.indexOf("\r\n\r\n");
    response.body = bytes.mid(end + 4);
    QByteArrayList lines = bytes.left(end).replace("\r\n", "\n").split('\n');
    response.statusLine = lines.takeFirst();
    for (const QByteArray &line : lines) {
        const auto colon = line.indexOf(": ");
        response.headers[line.left(colon)] = line.mid(colon + 2);
    }
    return response;
}

class GoalsResponderTest : public testing::Test {
protected:
    Response ask(const QByteArray &request) {
        return parse(responder.processRequest(request, source));
    }

    test::ManualTime time;
    test::RecordingLog log;
    GoalsResponder responder{time, log};
    GoalsResponder::Source source;
};

const std::map<QByteArray, QByteArray> plainHeaders(qsizetype length) {
    return {{"Connection", "close"}, {"Content-Length", QByteArray::number(length)}};
}

struct RoutingCase {
    const char *name;
    QByteArray request;
    QByteArray statusLine;
};

class Routing : public GoalsResponderTest, public testing::WithParamInterface<RoutingCase> {};

TEST_P(Routing, GoesByTheFirstLinesFirstTwoElements) {
    EXPECT_EQ(ask(GetParam().request).statusLine, GetParam().statusLine);
    EXPECT_TRUE(log.lines().isEmpty());
}

constexpr auto ok = "HTTP/1.1 200 OK";
constexpr auto badRequest = "HTTP/1.1 400 Bad Request";
constexpr auto notFound = "HTTP/1.1 404 Not Found";

INSTANTIATE_TEST_SUITE_P(
    Requests, Routing,
    testing::Values(
        RoutingCase{"Goals", "GET /goals HTTP/1.1\r\n\r\n", ok},
        RoutingCase{"Health", "GET /health HTTP/1.1\r\n\r\n", ok},
        RoutingCase{"OptionsOnAnyPath", "OPTIONS /anything HTTP/1.1\r\n\r\n", ok},
        RoutingCase{"OptionsOnNoPath", "OPTIONS ", ok}, RoutingCase{"NoProtocol", "GET /goals", ok},
        RoutingCase{"AnyProtocol", "GET /goals nonsense at all\r\n", ok},
        RoutingCase{"LineFeedAloneAfterProtocol", "GET /goals HTTP/1.1\n\n", ok},
        // A line feed belongs to the element that it ends: a protocol nobody looks at, or the path.
        RoutingCase{"LineFeedAloneAfterProtocolWithoutHeaders", "GET /goals HTTP/1.1\n", ok},
        RoutingCase{"LineFeedAloneEndsThePath", "GET /goals\n", notFound},
        RoutingCase{"LineFeedAloneAfterPath", "GET /goals\nHost: x\n", notFound},
        RoutingCase{"BodyIgnored", "GET /goals HTTP/1.1\r\n\r\nPOST /x", ok},
        RoutingCase{"Pipelined", "GET /goals HTTP/1.1\r\n\r\nGET /none HTTP/1.1\r\n", ok},
        RoutingCase{"MethodAlone", "GET", badRequest},
        RoutingCase{"MethodAndLineEnd", "GET\r\n\r\n", badRequest},
        RoutingCase{"EmptyLine", "\r\n", badRequest},
        RoutingCase{"EmptyLineFirst", "\r\nGET /goals HTTP/1.1\r\n", badRequest},
        RoutingCase{"TwoBlanks", "GET  /goals HTTP/1.1\r\n", notFound},
        RoutingCase{"LeadingBlank", " GET /goals HTTP/1.1\r\n", notFound},
        RoutingCase{"TabInPlaceOfBlank", "GET\t/goals\r\n", badRequest},
        RoutingCase{"LowerCaseMethod", "get /goals HTTP/1.1\r\n", notFound},
        RoutingCase{"LowerCaseOptions", "options / HTTP/1.1\r\n", notFound},
        RoutingCase{"Head", "HEAD /goals HTTP/1.1\r\n", notFound},
        RoutingCase{"Post", "POST /goals HTTP/1.1\r\n", notFound},
        RoutingCase{"Query", "GET /goals?x=1 HTTP/1.1\r\n", notFound},
        RoutingCase{"TrailingSlash", "GET /goals/ HTTP/1.1\r\n", notFound},
        RoutingCase{"Encoded", "GET /%67oals HTTP/1.1\r\n", notFound},
        RoutingCase{"UpperCasePath", "GET /Goals HTTP/1.1\r\n", notFound},
        RoutingCase{"Root", "GET / HTTP/1.1\r\n", notFound},
        RoutingCase{"NulInThePath", QByteArray("GET /goals\0 HTTP/1.1\r\n", 22), notFound},
        RoutingCase{"InvalidUtf8", "GET /goals HTTP/1.1\r\nX: \xff\r\n", badRequest},
        RoutingCase{"CutInsideACharacter", "GET /goals HTTP/1.1\r\nX: \xf0\x9f", badRequest},
        RoutingCase{"EightKilobytes", "GET /goals HTTP/1.1\r\n" + QByteArray(8171, 'x'), ok}),
    [](const auto &row) { return row.param.name; });

TEST_F(GoalsResponderTest, WithoutASourceGoalsAreThoseOfNoSession) {
    EXPECT_EQ(ask("GET /goals HTTP/1.1\r\n\r\n").json(),
              (QJsonObject{{u"active"_s, false}, {u"goals"_s, u""_s}, {u"sessionId"_s, u""_s}}));
}

TEST_F(GoalsResponderTest, GoalsAreWhatTheSourceSaysUnfiltered) {
    source = [] {
        return QVariantMap{{u"active"_s, true},
                           {u"goals"_s, u"Write \"report\" / Überblick 📝"_s},
                           {u"timeRemaining"_s, 299.98},
                           {u"duration"_s, 1500},
                           {u"more"_s, QVariantList{1, u"two"_s}}};
    };
    const QJsonObject json = ask("GET /goals HTTP/1.1\r\n\r\n").json();
    EXPECT_EQ(json[u"active"_s], true);
    EXPECT_EQ(json[u"goals"_s], u"Write \"report\" / Überblick 📝"_s);
    EXPECT_EQ(json[u"timeRemaining"_s], 299.98);
    EXPECT_EQ(json[u"duration"_s], 1500);
    EXPECT_EQ(json[u"more"_s], (QJsonArray{1, u"two"_s}));
}

TEST_F(GoalsResponderTest, EveryKindOfValueIsWrittenCompactly) {
    source = [] {
        return QVariantMap{{u"bool"_s, false},
                           {u"double"_s, 0.1},
                           {u"empty list"_s, QVariantList{}},
                           {u"empty map"_s, QVariantMap{}},
                           {u"int"_s, -7},
                           {u"key \"in\" quotes"_s, QStringList{u"a"_s, u"b\n"_s}},
                           {u"least"_s, std::numeric_limits<qint64>::min()},
                           {u"most"_s, std::numeric_limits<quint64>::max()},
                           {u"nothing"_s, QVariant::fromValue(nullptr)},
                           {u"start"_s, 1772452800.0},
                           {u"uint"_s, 7U},
                           {u"ulong"_s, quint64{8}}};
    };
    EXPECT_EQ(ask("GET /goals").body.toStdString(),
              R"({"bool":false,"double":0.1,"empty list":[],"empty map":{},"int":-7,)"
              R"("key \"in\" quotes":["a","b\n"],"least":-9223372036854775808,)"
              R"("most":18446744073709552000,"nothing":null,"start":1772452800,"uint":7,)"
              R"("ulong":8})");
}

TEST_F(GoalsResponderTest, NoValueAtAllIsAnEmptyObject) {
    source = [] { return QVariantMap{}; };
    EXPECT_EQ(ask("GET /goals").body, "{}");
}

TEST_F(GoalsResponderTest, TheContentLengthCountsBytes) {
    source = [] { return QVariantMap{{u"goals"_s, u"é📝"_s}}; };
    const Response response = ask("GET /goals");
    EXPECT_EQ(response.body, "{\"goals\":\"é📝\"}");
    EXPECT_EQ(response.headers.at("Content-Length"), "18");
}

TEST_F(GoalsResponderTest, JsonResponsesCarryTheirFourHeadersAndNoMaxAge) {
    const Response response = ask("GET /goals");
    auto expected = plainHeaders(response.body.size());
    expected["Content-Type"] = "application/json";
    expected["Access-Control-Allow-Origin"] = "*";
    expected["Access-Control-Allow-Methods"] = "GET, POST, OPTIONS";
    expected["Access-Control-Allow-Headers"] = "Content-Type";
    EXPECT_EQ(response.headers, expected);
}

TEST_F(GoalsResponderTest, ThePreflightCarriesItsFourHeadersAndAnEmptyBody) {
    const Response response = ask("OPTIONS /anything HTTP/1.1\r\n\r\n");
    auto expected = plainHeaders(0);
    expected["Access-Control-Allow-Origin"] = "*";
    expected["Access-Control-Allow-Methods"] = "GET, POST, OPTIONS";
    expected["Access-Control-Allow-Headers"] = "Content-Type, Authorization";
    expected["Access-Control-Max-Age"] = "86400";
    EXPECT_EQ(response.headers, expected);
    EXPECT_EQ(response.body, "");
}

TEST_F(GoalsResponderTest, ErrorsCarryNoHeadersOfTheirOwn) {
    for (const auto &[request, body] :
         {std::pair<QByteArray, QByteArray>{"GET", "Bad Request"}, {"GET /none", "Not Found"}}) {
        const Response response = ask(request);
        EXPECT_EQ(response.body, body);
        EXPECT_EQ(response.headers, plainHeaders(body.size()));
    }
}

TEST_F(GoalsResponderTest, HealthTellsStatusServiceAndTheTimeInUtc) {
    time.setWallClock(Date::fromUnixSeconds(1772452800.9));
    EXPECT_EQ(ask("GET /health HTTP/1.1\r\n\r\n").json(),
              (QJsonObject{{u"status"_s, u"ok"_s},
                           {u"timestamp"_s, u"2026-03-02T12:00:00Z"_s},
                           {u"service"_s, u"TARNE Local API"_s}}));
}

TEST_F(GoalsResponderTest, WhatHasNoJsonFormIsAServerErrorAndLogged) {
    source = [] { return QVariantMap{{u"progress"_s, std::numeric_limits<double>::quiet_NaN()}}; };
    const Response response = ask("GET /goals");
    EXPECT_EQ(response.statusLine, "HTTP/1.1 500 Internal Server Error");
    EXPECT_EQ(response.body, "Internal Server Error");
    EXPECT_EQ(response.headers, plainHeaders(response.body.size()));
    EXPECT_EQ(log.lines(), QStringList{u"JSON serialization error: a number that is not finite"_s});
}

TEST_F(GoalsResponderTest, ATypeUnknownToJsonIsAServerErrorAtAnyDepth) {
    source = [] { return QVariantMap{{u"a"_s, QVariantList{QVariantMap{{u"b"_s, QDateTime()}}}}}; };
    EXPECT_EQ(ask("GET /goals").statusLine, "HTTP/1.1 500 Internal Server Error");
    EXPECT_EQ(log.lines(), QStringList{u"JSON serialization error: a value of type QDateTime"_s});
}

TEST_F(GoalsResponderTest, TheSourceIsAskedForGoalsOnly) {
    int calls = 0;
    source = [&] {
        ++calls;
        return QVariantMap{};
    };
    ask("GET /health");
    ask("OPTIONS /goals");
    ask("GET /none");
    EXPECT_EQ(calls, 0);
    ask("GET /goals");
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace tarne::test
