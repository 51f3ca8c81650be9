#include "Messages.h"

#include "ProtocolLimits.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

/// The id of what is no message; nothing where it is one.
std::optional<MessageId> refused(std::string_view text) {
    const auto message = readExtensionMessage(text);
    const auto *malformed = std::get_if<Malformed>(&message);
    return malformed != nullptr ? std::optional(malformed->id) : std::nullopt;
}

QJsonObject parsed(const std::string &text) {
    EXPECT_EQ(text.find('\n'), std::string::npos);
    return QJsonDocument::fromJson(QByteArray::fromStdString(text)).object();
}

TEST(AMessageOfTheExtension, GreetsOrAsks) {
    EXPECT_TRUE(std::holds_alternative<Hello>(
        readExtensionMessage(R"({"v":1,"type":"hello","browser":"chromium","version":"1.0.0"})")));
    const auto message = readExtensionMessage(
        R"({"v":1,"id":7,"op":"classify","page":{"origin":"https://example.org","path":"/a",)"
        R"("title":"A film","description":null},"fresh":true})");
    const auto *asked = std::get_if<NumberedQuestion>(&message);
    ASSERT_NE(asked, nullptr);
    EXPECT_EQ(asked->id, 7u);
    EXPECT_EQ(asked->question.kind, Question::Kind::Classify);
    EXPECT_TRUE(asked->question.isFresh);
    EXPECT_EQ(asked->question.page.origin, "https://example.org");
    EXPECT_EQ(asked->question.page.path, "/a");
    EXPECT_EQ(asked->question.page.title, "A film");
    EXPECT_EQ(asked->question.page.description, std::nullopt);
}

TEST(AMessageOfTheExtension, ThatIsNoneIsRefusedUnderItsId) {
    for (const char *text :
         {R"({"v":1,"id":7})", R"({"v":2,"id":7,"op":"state"})", R"({"id":7,"op":"state"})",
          R"({"v":1,"id":7,"op":"key"})", R"({"v":1,"id":7,"op":"classify"})",
          R"({"v":1,"id":7,"op":"classify","page":{}})",
          R"({"v":1,"id":7,"op":"classify","page":{"origin":7}})",
          R"({"v":1,"id":7,"op":"classify","page":{"origin":"x","title":7}})",
          R"({"v":1,"id":7,"op":"classify","page":{"origin":"x"},"fresh":"yes"})",
          R"({"v":1,"id":7,"type":"goodbye"})"})
        EXPECT_EQ(refused(text), 7u) << text;
    for (const char *text :
         {"", "{", "[]", "null", R"({"v":1,"op":"state"})", R"({"v":1,"id":0,"op":"state"})",
          R"({"v":1,"id":-7,"op":"state"})", R"({"v":1,"id":"7","op":"state"})",
          R"({"v":1,"id":9007199254740993,"op":"state"})", R"({"v":1,"id":7,"op":"state"}x)",
          "{\"v\":1,\"id\":7,\"op\":\"\xff\"}"})
        EXPECT_EQ(refused(text), 0u) << text;
    EXPECT_EQ(refused(std::string(limits::line + 1, ' ')), 0u);
}

TEST(AQuestionForTheServer, HasTheSessionsGoalsAndNothingThatIsNotTold) {
    const auto message = readExtensionMessage(
        R"({"v":1,"id":7,"op":"override","goals":"Mine","url":"https://example.org/?secret",)"
        R"("page":{"origin":"https://example.org","path":"/a","query":"secret"}})");
    const auto *asked = std::get_if<NumberedQuestion>(&message);
    ASSERT_NE(asked, nullptr);
    const QJsonObject page{{u"origin"_s, u"https://example.org"_s}, {u"path"_s, u"/a"_s}};
    EXPECT_EQ(parsed(writtenQuestion(3, asked->question, "Write \"it\"\n")),
              (QJsonObject{{u"v"_s, 1},
                           {u"id"_s, 3},
                           {u"op"_s, u"override"_s},
                           {u"goals"_s, u"Write \"it\"\n"_s},
                           {u"page"_s, page}}));
    EXPECT_EQ(parsed(writtenQuestion(4, {}, "Write")),
              (QJsonObject{{u"v"_s, 1}, {u"id"_s, 4}, {u"op"_s, u"state"_s}}));
}

class AnAnswerOfTheServer : public testing::TestWithParam<const char *> {};

TEST_P(AnAnswerOfTheServer, IsToldAsItIs) {
    const auto answer = readAnswer(GetParam());
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->id, 7u);
    EXPECT_EQ(parsed(writtenAnswer(7, answer->answer)), parsed(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(
    OfEveryKind, AnAnswerOfTheServer,
    testing::Values(
        R"({"v":1,"id":7,"verdict":"off_task","confidence":0.93,"reason":"A \"film\".","source":"model"})",
        R"({"v":1,"id":7,"verdict":"on_task","confidence":1,"reason":"","source":"override"})",
        R"({"v":1,"id":7,"ok":true})", R"({"v":1,"id":7,"key":false,"left_today":0})",
        R"({"v":1,"id":7,"error":"quota","retry_after":60})",
        R"({"v":1,"id":7,"error":"offline"})"));

TEST(AnAnswer, ThatIsNoneIsNotTold) {
    for (const char *line :
         {"", "HTTP/1.1 200 OK", "{}", R"({"v":1,"id":7})", R"({"v":2,"id":7,"ok":true})",
          R"({"v":1,"id":7,"ok":false})", R"({"v":1,"id":7,"error":"<b>"})",
          R"({"v":1,"id":7,"verdict":"allow","confidence":1,"reason":"","source":"model"})",
          R"({"v":1,"id":7,"verdict":"on_task","confidence":2,"reason":"","source":"model"})",
          R"({"v":1,"id":7,"verdict":"on_task","confidence":1,"reason":"","source":"me"})",
          R"({"v":1,"id":7,"verdict":"on_task","confidence":1,"source":"model"})"})
        EXPECT_FALSE(readAnswer(line)) << line;
}

TEST(TheBridgesOwnMessages, AreAsToldInTheProtocol) {
    EXPECT_EQ(parsed(writtenSession({.kind = SessionState::Kind::Active,
                                     .id = "A",
                                     .goals = "Write",
                                     .ends = 1763800000.5,
                                     .duration = 1500.0})),
              (QJsonObject{{u"v"_s, 1},
                           {u"type"_s, u"session"_s},
                           {u"state"_s, u"active"_s},
                           {u"id"_s, u"A"_s},
                           {u"goals"_s, u"Write"_s},
                           {u"ends"_s, 1763800000.5},
                           {u"duration"_s, 1500.0}}));
    EXPECT_EQ(writtenSession({.kind = SessionState::Kind::Inactive}),
              R"({"v":1,"type":"session","state":"inactive"})");
    EXPECT_EQ(writtenSession({}), R"({"v":1,"type":"session","state":"unavailable"})");
    EXPECT_EQ(writtenServer("absent"), R"({"v":1,"type":"server","state":"absent"})");
    EXPECT_EQ(writtenAnswer(0, NoAnswer{"bad_request", {}}),
              R"({"v":1,"id":0,"error":"bad_request"})");
}

} // namespace
} // namespace tarne::test
