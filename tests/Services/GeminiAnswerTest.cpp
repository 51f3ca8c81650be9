#include "GeminiAnswer.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

const QString invalidFormat = u"Invalid response format"_s;
const QString noJson = u"The service's answer is not valid JSON."_s;

QString failure(const QByteArray &body) {
    const GeminiResult result = readGeminiAnswer(body);
    const auto *error = std::get_if<GeminiError>(&result);
    return error ? error->localizedDescription : u"(a success)"_s;
}

QString success(const QByteArray &body) {
    const GeminiResult result = readGeminiAnswer(body);
    const auto *text = std::get_if<QString>(&result);
    return text ? *text : u"(a failure)"_s;
}

TEST(GeminiAnswer, IsTheFirstPartOfTheFirstCandidate) {
    EXPECT_EQ(success(R"({"candidates":[
                {"content":{"role":"model","parts":[{"text":"one"},{"text":"two"}]},"index":0},
                {"content":{"parts":[{"text":"three"}]}}],"usageMetadata":{"totalTokenCount":5}})"),
              u"one"_s);
}

TEST(GeminiAnswer, MayBeEmptyText) {
    EXPECT_EQ(success(R"({"candidates":[{"content":{"parts":[{"text":""}]}}]})"), QString());
}

TEST(GeminiAnswer, CountsAsSuccessBesideAnError) {
    EXPECT_EQ(success(R"({"error":{"message":"no"},
                          "candidates":[{"content":{"parts":[{"text":"yes"}]}}]})"),
              u"yes"_s);
}

TEST(GeminiAnswer, KeepsEveryCharacterOfTheText) {
    EXPECT_EQ(
        success(
            R"({"candidates":[{"content":{"parts":[{"text":"\ufeffa\u0000b\r\n\u2028 ü \ud83c\udf89"}]}}]})"),
        QString(u"\uFEFFa\0b\r\n\u2028 ü 🎉"_s));
}

TEST(GeminiAnswer, OfTwoEqualKeysTheLastCounts) {
    EXPECT_EQ(
        success(
            R"({"candidates":5,"candidates":[{"content":{"parts":[{"text":"a","text":"b"}]}}]})"),
        u"b"_s);
}

TEST(GeminiAnswer, IsReadBesideNumbersOfAnySize) {
    for (const QByteArray &number :
         {QByteArray("123456789012345678901234567890"), QByteArray("-98765432109876543210"),
          QByteArray("1e400"), QByteArray("-0.5E-4000"), QByteArray(400, '1') + "e-5",
          QByteArray(400, '1') + "E+5"}) {
        const QByteArray answer =
            R"("candidates":[{"content":{"parts":[{"text":"\\\"1e999\" 2"}]}}])";
        EXPECT_EQ(success("{" + answer + R"(,"n":)" + number + "}"), u"\\\"1e999\" 2"_s);
        EXPECT_EQ(success(R"({"n":[10.5,)" + number + ",1]," + answer + "}"), u"\\\"1e999\" 2"_s);
        EXPECT_EQ(failure(R"({"error":{"message":)" + number + "}}"), invalidFormat);
    }
}

TEST(GeminiAnswer, OfBrokenNumbersBesideHugeOnesIsNoJson) {
    for (const QByteArray broken : {"01", "-", "1.", ".5", "1e", "+1", "0x1", "1 2", "--1", "1-"})
        EXPECT_EQ(failure(R"({"n":123456789012345678901234567890,"m":)" + broken + "}"), noJson)
            << broken.constData();
}

TEST(GeminiAnswer, IsReadFromTenThousandCandidates) {
    QByteArray body = R"({"candidates":[{"content":{"parts":[{"text":"first"}]}})";
    for (int i = 1; i < 10'000; ++i)
        body += R"(,{"content":{"parts":[{"text":"other"}]}})";
    EXPECT_EQ(success(body + "]}"), u"first"_s);
}

TEST(GeminiAnswer, IsReadFromTwentyMegabytes) {
    const QByteArray text(20'000'000, 'x');
    EXPECT_EQ(
        success(R"({"candidates":[{"content":{"parts":[{"text":")" + text + R"("}]}}]})").size(),
        text.size());
}

TEST(GeminiAnswer, WithoutATextGivesTheServicesOwnMessage) {
    EXPECT_EQ(failure(R"({"error":{"code":400,"message":"API key not valid.","status":"X"}})"),
              u"API key not valid."_s);
    EXPECT_EQ(failure(R"({"candidates":[],"error":{"message":""}})"), QString());
}

struct Shape {
    const char *name;
    const char *body;
};

class AnswerOfAnotherShape : public testing::TestWithParam<Shape> {};

TEST_P(AnswerOfAnotherShape, IsAnInvalidResponseFormat) {
    EXPECT_EQ(failure(GetParam().body), invalidFormat);
}

INSTANTIATE_TEST_SUITE_P(
    GeminiAnswer, AnswerOfAnotherShape,
    testing::Values(
        Shape{"EmptyObject", "{}"}, Shape{"TopLevelArray", "[]"},
        Shape{"TopLevelArrayOfAnswers", R"([{"candidates":[]}])"},
        Shape{"NoCandidates", R"({"candidates":[]})"},
        Shape{"CandidatesNull", R"({"candidates":null})"},
        Shape{"CandidatesAnObject", R"({"candidates":{"content":{}}})"},
        Shape{"OneCandidateNoObject", R"({"candidates":[{"content":{"parts":[{"text":"a"}]}},7]})"},
        Shape{"NoContent", R"({"candidates":[{"finishReason":"SAFETY"}]})"},
        Shape{"ContentAText", R"({"candidates":[{"content":"a"}]})"},
        Shape{"NoParts", R"({"candidates":[{"content":{}}]})"},
        Shape{"PartsEmpty", R"({"candidates":[{"content":{"parts":[]}}]})"},
        Shape{"OnePartNoObject", R"({"candidates":[{"content":{"parts":[{"text":"a"},"b"]}}]})"},
        Shape{"OnlyALaterPartHasText",
              R"({"candidates":[{"content":{"parts":[{"inlineData":{}},{"text":"a"}]}}]})"},
        Shape{"OnlyALaterCandidateHasText",
              R"({"candidates":[{},{"content":{"parts":[{"text":"a"}]}}]})"},
        Shape{"TextANumber", R"({"candidates":[{"content":{"parts":[{"text":1}]}}]})"},
        Shape{"TextNull", R"({"candidates":[{"content":{"parts":[{"text":null}]}}]})"},
        Shape{"KeyInAnotherCase", R"({"Candidates":[{"content":{"parts":[{"text":"a"}]}}]})"},
        Shape{"ErrorAText", R"({"error":"bad"})"},
        Shape{"ErrorWithoutMessage", R"({"error":{"code":500}})"},
        Shape{"MessageANumber", R"({"error":{"message":500}})"},
        Shape{"MessageInAnArray", R"([{"error":{"message":"in an array"}}])"}),
    [](const auto &tested) { return tested.param.name; });

class BodyThatIsNoJson : public testing::TestWithParam<Shape> {};

TEST_P(BodyThatIsNoJson, IsToldInOneConstantLine) {
    EXPECT_EQ(failure(GetParam().body), noJson);
}

INSTANTIATE_TEST_SUITE_P(
    GeminiAnswer, BodyThatIsNoJson,
    testing::Values(Shape{"Empty", ""}, Shape{"Blank", " \n"},
                    Shape{"Html", "<html><body>502</body></html>"}, Shape{"Text", "Bad Gateway"},
                    Shape{"TopLevelString", R"("candidates")"}, Shape{"TopLevelNumber", "12"},
                    Shape{"TopLevelNull", "null"}, Shape{"TextBehindTheDocument", "{} x"},
                    Shape{"TwoDocuments", "{}{}"}, Shape{"CutOff", R"({"candidates":[{"cont)"},
                    Shape{"TrailingComma", R"({"candidates":[],})"}, Shape{"Comment", "{} // done"},
                    Shape{"SingleQuotes", "{'error':{}}"}, Shape{"LeadingZero", R"({"a":01})"},
                    Shape{"NotANumber", R"({"a":NaN})"},
                    Shape{"RawLineFeedInText", "{\"a\":\"b\nc\"}"},
                    Shape{"InvalidUtf8", "{\"a\":\"\xC3\x28\"}"},
                    Shape{"LoneHighSurrogate", R"({"a":"\ud800"})"},
                    Shape{"LoneLowSurrogate", R"({"a":"\udc00"})"},
                    Shape{"UnknownEscape", R"({"a":"\x41"})"}),
    [](const auto &tested) { return tested.param.name; });

TEST(GeminiAnswer, WithANulByteBehindItIsNoJson) {
    EXPECT_EQ(failure(QByteArray("{}\0{}", 5)), noJson);
}

TEST(GeminiAnswer, NestedTenThousandDeepDoesNoHarm) {
    const QByteArray deep = QByteArray(10'000, '[') + QByteArray(10'000, ']');
    EXPECT_EQ(failure(deep), noJson);
    EXPECT_EQ(failure(R"({"candidates":)" + deep + "}"), noJson);
    EXPECT_EQ(failure(QByteArray(1'000'000, '[')), noJson);
    EXPECT_EQ(failure(QByteArray(500'000, '{')), noJson);
}

TEST(GeminiAnswer, ToAFailedTransportIsWhatTheTransportTells) {
    EXPECT_EQ(std::get<GeminiError>(readGeminiResponse(TransportError{u"No network."_s})),
              GeminiError{u"No network."_s});
}

TEST(GeminiAnswer, WithoutABodyIsNoData) {
    EXPECT_EQ(std::get<GeminiError>(readGeminiResponse(HTTPResponse{.status = 200, .body = {}})),
              GeminiError{u"No data received"_s});
}

TEST(GeminiAnswer, IsReadByItsBodyWhateverItsStatus) {
    EXPECT_EQ(
        std::get<QString>(readGeminiResponse({HTTPResponse{
            .status = 500, .body = R"({"candidates":[{"content":{"parts":[{"text":"a"}]}}]})"}})),
        u"a"_s);
}

} // namespace
} // namespace tarne::test
