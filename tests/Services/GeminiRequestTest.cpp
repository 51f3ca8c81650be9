#include "GeminiRequest.h"
#include "GeminiAddresses.h"

#include <QJsonDocument>
#include <QStringDecoder>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

QByteArray address(const QString &key) {
    return geminiAddress(gemini::endpoint, key).toEncoded();
}

TEST(GeminiRequest, AddressesTheModelWithTheKeyInTheQuery) {
    EXPECT_EQ(address(u"AIzaSy-Example_123"_s),
              "https://generativelanguage.googleapis.com/v1beta/models/"
              "gemini-1.5-flash-latest:generateContent?key=AIzaSy-Example_123");
}

TEST(GeminiRequest, EncodesNothingInTheKey) {
    EXPECT_TRUE(
        address(u"a+b&c=d/e?f:g@h!$'()*,;~._-"_s).endsWith("?key=a+b&c=d/e?f:g@h!$'()*,;~._-"));
    EXPECT_TRUE(address(u"a%2Fb"_s).endsWith("?key=a%2Fb"));
    EXPECT_TRUE(address(u"azAZ09"_s).endsWith("?key=azAZ09"));
}

TEST(GeminiRequest, EscapesInTheKeyTakeTheirNormalForm) {
    EXPECT_TRUE(address(u"a%41b%7Ec%2fd"_s).endsWith("?key=aAb~c%2Fd"));
}

TEST(GeminiRequest, AKeyWithANumberSignEndsTheQueryThere) {
    EXPECT_EQ(geminiAddress(gemini::endpoint, u"abc#d"_s).query(), u"key=abc"_s);
}

TEST(GeminiRequest, ABodyHoldsThePromptAndTheFourNumbers) {
    EXPECT_EQ(geminiRequestBody(u"Hello"_s),
              R"({"contents":[{"parts":[{"text":"Hello"}]}],"generationConfig":)"
              R"({"maxOutputTokens":1024,"temperature":0.7,"topK":40,"topP":0.95}})");
}

TEST(GeminiRequest, EscapesWhatAJsonStringCannotHold) {
    EXPECT_TRUE(geminiRequestBody(u"a\"b\\c\nd\u0001 – ü 🎉"_s)
                    .contains("\"text\":\"a\\\"b\\\\c\\nd\\u0001 – ü 🎉\""));
}

TEST(GeminiRequest, ABodyIsWellFormedEvenAroundBrokenText) {
    const QByteArray body = geminiRequestBody(QString(QChar(0xD800)) + u"x"_s);
    EXPECT_FALSE(QJsonDocument::fromJson(body).isNull());
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString decoded = decoder(body);
    EXPECT_FALSE(decoder.hasError());
}

class KeyThatNoAddressCarries : public testing::TestWithParam<const char16_t *> {};

TEST_P(KeyThatNoAddressCarries, EndsTheProcessWithoutTellingTheKey) {
    EXPECT_DEATH(
        {
            [[maybe_unused]] const QUrl url =
                geminiAddress(gemini::endpoint, QString::fromUtf16(GetParam()));
        },
        "^tarne: fatal: the API key holds characters that no address can carry\n$");
}

INSTANTIATE_TEST_SUITE_P(GeminiRequest, KeyThatNoAddressCarries,
                         testing::Values(u" ", u"a b", u"key\n", u"a\"b", u"a<b", u"a[b]", u"a|b",
                                         u"a^b", u"a`b", u"a{b}", u"a\\b", u"a%b", u"a%zz",
                                         u"a#b#c", u"schlüssel", u"🔑"));

} // namespace
} // namespace tarne::test
