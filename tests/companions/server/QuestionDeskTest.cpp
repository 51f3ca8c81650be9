#include "QuestionDesk.h"

#include "ServerFixtures.h"

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class AQuestionDesk : public ClassifierTest {
protected:
    void ask(const QByteArray &line) {
        QuestionDesk desk(classifier());
        desk.answer(line, [this](const QByteArray &answer) {
            EXPECT_FALSE(answer.contains('\n'));
            m_answers.push_back(QJsonDocument::fromJson(answer).object());
        });
    }
    /// The answer to a line that is answered at once.
    QJsonObject answerTo(const QByteArray &line) {
        ask(line);
        return takeAnswer();
    }
    QJsonObject takeAnswer() {
        if (m_answers.size() != 1) {
            ADD_FAILURE() << m_answers.size() << " answers";
            return {};
        }
        return std::exchange(m_answers, {}).front();
    }

    static QByteArray question(const QByteArray &op, const QByteArray &more = {}) {
        return R"({"v":1,"id":7,"op":")" + op +
               R"(","goals":"Write","page":{"origin":"https://example.org","path":"/a",)"
               R"("title":"A film","description":"About it"})" +
               more + '}';
    }

private:
    std::vector<QJsonObject> m_answers;
};

const QJsonObject badRequest{{u"v"_s, 1}, {u"id"_s, 7}, {u"error"_s, u"bad_request"_s}};
const QJsonObject badLine{{u"v"_s, 1}, {u"id"_s, 0}, {u"error"_s, u"bad_request"_s}};

TEST_F(AQuestionDesk, TellsTheModelsVerdictAndWhereItIsFrom) {
    ask(question("classify"));
    answer(serviceVerdict(u"off_task"_s, 0.75));
    EXPECT_EQ(takeAnswer(), (QJsonObject{{u"v"_s, 1},
                                         {u"id"_s, 7},
                                         {u"verdict"_s, u"off_task"_s},
                                         {u"confidence"_s, 0.75},
                                         {u"reason"_s, u"A reason."_s},
                                         {u"source"_s, u"model"_s}}));
    EXPECT_EQ(answerTo(question("classify"))[u"source"], u"cache"_s);
}

TEST_F(AQuestionDesk, NotesAnOverrideWithoutAskingTheModel) {
    EXPECT_EQ(answerTo(question("override")),
              (QJsonObject{{u"v"_s, 1}, {u"id"_s, 7}, {u"ok"_s, true}}));
    EXPECT_EQ(answerTo(question("classify")), (QJsonObject{{u"v"_s, 1},
                                                           {u"id"_s, 7},
                                                           {u"verdict"_s, u"on_task"_s},
                                                           {u"confidence"_s, 1},
                                                           {u"reason"_s, u""_s},
                                                           {u"source"_s, u"override"_s}}));
}

TEST_F(AQuestionDesk, TellsWhetherThereIsAKeyAndWhatIsLeftOfTheDay) {
    EXPECT_EQ(answerTo(R"({"v":1,"id":8,"op":"state"})"),
              (QJsonObject{{u"v"_s, 1}, {u"id"_s, 8}, {u"key"_s, true}, {u"left_today"_s, 300}}));
    ask(question("classify"));
    answer("{}", 500);
    takeAnswer();
    EXPECT_EQ(answerTo(R"({"v":1,"id":8,"op":"state"})")[u"left_today"], 299);
    make(false);
    EXPECT_EQ(answerTo(R"({"v":1,"id":8,"op":"state"})")[u"key"], false);
}

TEST_F(AQuestionDesk, AsksTheModelAgainForAFreshAnswer) {
    ask(question("classify"));
    answer(serviceVerdict(u"off_task"_s));
    takeAnswer();
    ask(question("classify", R"(,"fresh":true)"));
    answer(serviceVerdict(u"on_task"_s));
    EXPECT_EQ(takeAnswer()[u"source"], u"model"_s);
}

TEST_F(AQuestionDesk, TellsEachFailureInItsWord) {
    ask(question("classify"));
    answer(TransportError{u"No connection."_s});
    EXPECT_EQ(takeAnswer(), (QJsonObject{{u"v"_s, 1}, {u"id"_s, 7}, {u"error"_s, u"offline"_s}}));
    ask(question("classify"));
    answer("{}", 500);
    EXPECT_EQ(takeAnswer(), (QJsonObject{{u"v"_s, 1}, {u"id"_s, 7}, {u"error"_s, u"model"_s}}));
    ask(question("classify"));
    answer("{}", 429);
    EXPECT_EQ(
        takeAnswer(),
        (QJsonObject{{u"v"_s, 1}, {u"id"_s, 7}, {u"error"_s, u"quota"_s}, {u"retry_after"_s, 60}}));
    make(false);
    EXPECT_EQ(answerTo(question("classify")),
              (QJsonObject{{u"v"_s, 1}, {u"id"_s, 7}, {u"error"_s, u"no_key"_s}}));
}

TEST_F(AQuestionDesk, TakesAPageWithoutPathTitleAndDescription) {
    ask(R"({"v":1,"id":7,"op":"classify","goals":"Write","page":{"origin":"https://example.org",)"
        R"("title":null}})");
    answer(serviceVerdict(u"on_task"_s));
    EXPECT_EQ(takeAnswer()[u"verdict"], u"on_task"_s);
}

TEST_F(AQuestionDesk, RefusesWhatIsNoQuestionUnderItsId) {
    const QByteArray page = R"("page":{"origin":"https://example.org","path":"/"})";
    const QByteArray longGoals = R"("goals":")" + QByteArray(2001, 'x') + R"(")";
    for (const QByteArray &line :
         {QByteArray(R"({"v":2,"id":7,"op":"state"})"), QByteArray(R"({"id":7,"op":"state"})"),
          QByteArray(R"({"v":1,"id":7})"), QByteArray(R"({"v":1,"id":7,"op":"key"})"),
          QByteArray(R"({"v":1,"id":7,"op":7})"), QByteArray(R"({"v":1,"id":7,"op":"classify"})"),
          QByteArray(R"({"v":1,"id":7,"op":"classify","goals":"Write"})"),
          R"({"v":1,"id":7,"op":"classify",)" + page + '}',
          R"({"v":1,"id":7,"op":"classify","goals":"",)" + page + '}',
          R"({"v":1,"id":7,"op":"classify","goals":7,)" + page + '}',
          R"({"v":1,"id":7,"op":"override",)" + longGoals + ',' + page + '}',
          QByteArray(R"({"v":1,"id":7,"op":"classify","goals":"Write","page":"x"})"),
          QByteArray(R"({"v":1,"id":7,"op":"classify","goals":"W","page":{"origin":"x"}})"),
          question("classify", R"(,"fresh":"yes")")})
        EXPECT_EQ(answerTo(line), badRequest) << line.constData();
}

TEST_F(AQuestionDesk, RefusesALineWithoutAnIdUnderZero) {
    for (const char *line :
         {"", " ", "{", "[]", "7", "GET /health HTTP/1.1", R"({"v":1,"op":"state"})",
          R"({"v":1,"id":"7","op":"state"})", R"({"v":1,"id":0,"op":"state"})",
          R"({"v":1,"id":-1,"op":"state"})", R"({"v":1,"id":1.5,"op":"state"})",
          R"({"v":1,"id":9007199254740992,"op":"state"})", R"({"v":1,"id":7,"op":"state"} {})",
          "{\"v\":1,\"id\":7,\"op\":\"\xff\"}"})
        EXPECT_EQ(answerTo(line), badLine) << line;
    EXPECT_EQ(QJsonDocument::fromJson(QuestionDesk::tooLong()).object(), badLine);
}

TEST_F(AQuestionDesk, NeverTellsTheKey) {
    ask(question("classify"));
    answer(R"({"error":{"message":"API key KEY not valid"}})", 400);
    EXPECT_EQ(takeAnswer(), (QJsonObject{{u"v"_s, 1}, {u"id"_s, 7}, {u"error"_s, u"model"_s}}));
}

} // namespace
} // namespace tarne::test
