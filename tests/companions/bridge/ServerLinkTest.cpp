#include "ServerLink.h"

#include "CompanionsFolder.h"
#include "QuestionSocket.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using State = ServerLink::State;

/// A server on a real socket that says what it is told to say. `{id}` stands for the question's id.
class StandInServer {
public:
    StandInServer(const std::string &path, QByteArray answer)
        : toState(std::move(answer)),
          m_socket(std::make_unique<QuestionSocket>(
              context,
              QuestionSocket::Answerer{.answer = [this](const QByteArray &line,
                                                        const auto &reply) { take(line, reply); },
                                       .tooLong = "{}"})) {
        EXPECT_TRUE(m_socket->listen(path));
    }

    asio::io_context context{1};        ///< Its own, with which its connections go.
    std::vector<QJsonObject> questions; ///< Those for a page.
    std::vector<QuestionSocket::Reply> waiting;
    QByteArray toState; ///< Nothing is said where it is empty.

private:
    void take(const QByteArray &line, const QuestionSocket::Reply &reply) {
        const QJsonObject question = QJsonDocument::fromJson(line).object();
        if (question[u"op"] == u"state"_s) {
            if (!toState.isEmpty())
                reply(QByteArray(toState).replace("{id}",
                                                  QByteArray::number(question[u"id"].toInteger())));
            return;
        }
        questions.push_back(question);
        waiting.push_back(reply);
    }

    std::unique_ptr<QuestionSocket> m_socket;
};

const QByteArray ready = R"({"v":1,"id":{id},"key":true,"left_today":300})";
const QByteArray withoutKey = R"({"v":1,"id":{id},"key":false,"left_today":300})";
const Question aboutAPage{
    .kind = Question::Kind::Classify,
    .page = {.origin = "https://example.org", .path = {}, .title = {}, .description = {}}};

class AServerLink : public testing::Test {
protected:
    ~AServerLink() override {
        // The connections go before what they tell.
        m_link.reset();
    }

    void open(LinkPatience patience = {}, uid_t user = ::geteuid()) {
        m_link.emplace(
            context.get_executor(), folder(), [this] { states.push_back(m_link->state()); },
            patience, user);
        m_link->start();
    }
    StandInServer *serve(const std::string &path, const QByteArray &toState) {
        return m_servers.emplace_back(std::make_unique<StandInServer>(path, toState)).get();
    }
    StandInServer *serve(int port, const QByteArray &toState) {
        return serve(socket(port), toState);
    }
    void endServers() { m_servers.clear(); }
    void ask(const Question &question = aboutAPage) {
        m_link->ask(question, "Write", [this](const Answer &answer) { answers.push_back(answer); });
    }
    std::string error(std::size_t index) const {
        const auto *none = std::get_if<NoAnswer>(&answers.at(index));
        return none != nullptr ? none->error : "an answer";
    }

    template <class Condition>
    void serveUntil(Condition condition) {
        const auto deadline = std::chrono::steady_clock::now() + 20s;
        while (!condition() && std::chrono::steady_clock::now() < deadline)
            serveOnce();
        EXPECT_TRUE(condition());
    }
    void serveFor(std::chrono::milliseconds time) {
        const auto end = std::chrono::steady_clock::now() + time;
        while (std::chrono::steady_clock::now() < end)
            serveOnce();
    }
    void serveOnce() {
        for (const auto &server : m_servers) {
            server->context.restart();
            server->context.poll();
        }
        context.restart();
        context.run_one_for(1ms);
    }

    std::string folder() const { return m_place.filePath(u"runtime"_s).toStdString(); }
    std::string socket(int port) const { return folder() + '/' + questionSocketName(port); }
    void makeFolder() { ASSERT_TRUE(makePrivateFolder(folder())); }
    State state() const { return m_link->state(); }

    asio::io_context context{1};
    std::vector<State> states;
    std::vector<Answer> answers;

private:
    QTemporaryDir m_place;
    std::optional<ServerLink> m_link;
    std::vector<std::unique_ptr<StandInServer>> m_servers;
};

TEST_F(AServerLink, WithoutAServerAnswersSoAtOnce) {
    open();
    ask();
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(error(0), "no_server");
    serveFor(50ms);
    // The first look is over.
    EXPECT_EQ(states, std::vector<State>{State::Absent});
}

TEST_F(AServerLink, FindsAServerThatIsThere) {
    makeFolder();
    serve(3000, ready);
    open();
    serveUntil([this] { return !states.empty(); });
    EXPECT_EQ(states, std::vector<State>{State::Ready});
}

TEST_F(AServerLink, FindsAServerWhoseFolderComesLater) {
    open();
    serveUntil([this] { return !states.empty(); });
    makeFolder();
    serve(3100, withoutKey);
    serveUntil([this] { return state() == State::NoKey; });
}

TEST_F(AServerLink, AsksWithTheGoalsAndHandsTheAnswerOn) {
    makeFolder();
    const auto *server = serve(3000, ready);
    open();
    serveUntil([this] { return state() == State::Ready; });
    ask();
    ask();
    serveUntil([&] { return server->waiting.size() == 2; });
    EXPECT_EQ(server->questions[0][u"goals"], u"Write"_s);
    const auto answerTo = [&](std::size_t index, const QByteArray &content) {
        server->waiting[index](R"({"v":1,"id":)" +
                               QByteArray::number(server->questions[index][u"id"].toInteger()) +
                               ',' + content + '}');
    };
    // In another order than they were asked.
    answerTo(1, R"("error":"quota","retry_after":60)");
    serveUntil([this] { return answers.size() == 1; });
    answerTo(0, R"("verdict":"off_task","confidence":0.9,"reason":"","source":"cache")");
    serveUntil([this] { return answers.size() == 2; });
    EXPECT_EQ(error(0), "quota");
    EXPECT_EQ(std::get<PageVerdict>(answers[1]).verdict, "off_task");
}

TEST_F(AServerLink, FollowsTheServerToItsNextPortAndKey) {
    makeFolder();
    const auto *server = serve(3000, withoutKey);
    open();
    serveUntil([this] { return state() == State::NoKey; });
    ask();
    serveUntil([&] { return server->waiting.size() == 1; });
    endServers();
    serveUntil([this] { return state() == State::Absent; });
    EXPECT_EQ(error(0), "no_server");
    serve(3001, ready);
    serveUntil([this] { return states.size() == 3; });
    EXPECT_EQ(states, (std::vector<State>{State::NoKey, State::Absent, State::Ready}));
}

TEST_F(AServerLink, PassesOverASocketThatWasLeftOver) {
    makeFolder();
    {
        asio::io_context other;
        asio::local::stream_protocol::acceptor left(
            other, asio::local::stream_protocol::endpoint(socket(3005)));
    }
    serve(3000, ready);
    open();
    serveUntil([this] { return state() == State::Ready; });
}

TEST_F(AServerLink, PassesOverNamesThatAreNoServers) {
    makeFolder();
    serve(folder() + "/server-4000.sock", ready);
    open();
    serveFor(50ms);
    EXPECT_EQ(state(), State::Absent);
}

class AStranger : public AServerLink, public testing::WithParamInterface<const char *> {};

TEST_P(AStranger, OnTheSocketsNameIsAskedNothingAboutAnyPage) {
    makeFolder();
    const auto *stranger = serve(3000, GetParam());
    open({.forState = 100ms, .forAnswer = 20s, .beforeReturn = 10ms});
    serveFor(300ms);
    EXPECT_EQ(state(), State::Absent);
    ask();
    EXPECT_EQ(error(0), "no_server");
    EXPECT_TRUE(stranger->questions.empty());
    // Beside it a server is found.
    serve(3001, ready);
    serveUntil([this] { return state() == State::Ready; });
}

INSTANTIATE_TEST_SUITE_P(OfEveryKind, AStranger,
                         testing::Values("", "hello", "{}", R"({"v":1,"id":{id},"ok":true})",
                                         R"({"v":1,"id":99,"key":true,"left_today":1})",
                                         R"({"v":1,"id":{id},"key":"yes","left_today":1})"));

TEST_F(AServerLink, FindsAServerThatWasSilentAtFirst) {
    makeFolder();
    auto *server = serve(3000, "");
    open({.forState = 20ms, .forAnswer = 20s, .beforeReturn = 10ms, .beforeNextLook = 10ms});
    serveUntil([this] { return !states.empty(); });
    EXPECT_EQ(state(), State::Absent);
    server->toState = ready;
    serveUntil([this] { return state() == State::Ready; });
}

TEST_F(AServerLink, HangsUpOnAServerOfAnotherUserBeforeItSaysAWord) {
    makeFolder();
    serve(3000, ready);
    open({}, ::geteuid() + 1);
    serveFor(100ms);
    EXPECT_EQ(state(), State::Absent);
    ask();
    EXPECT_EQ(error(0), "no_server");
}

TEST_F(AServerLink, GivesUpOnAnAnswerThatDoesNotCome) {
    makeFolder();
    serve(3000, ready);
    open({.forState = 5s, .forAnswer = 20ms, .beforeReturn = 10ms});
    serveUntil([this] { return state() == State::Ready; });
    ask();
    serveUntil([this] { return answers.size() == 1; });
    EXPECT_EQ(error(0), "no_server");
    EXPECT_EQ(state(), State::Ready);
}

TEST_F(AServerLink, TakesAServerThatSaysSomethingElseForNone) {
    makeFolder();
    const auto *server = serve(3000, ready);
    open({.forState = 5s, .forAnswer = 20s, .beforeReturn = 10ms});
    serveUntil([this] { return state() == State::Ready; });
    ask();
    serveUntil([&] { return server->waiting.size() == 1; });
    server->waiting[0]("nonsense");
    serveUntil([this] { return answers.size() == 1; });
    EXPECT_EQ(error(0), "no_server");
    // It is asked again who it is.
    serveUntil([this] { return states.size() == 3; });
    EXPECT_EQ(states, (std::vector<State>{State::Ready, State::Absent, State::Ready}));
}

TEST_F(AServerLink, RefusesAQuestionThatIsLongerThanALine) {
    makeFolder();
    serve(3000, ready);
    open();
    serveUntil([this] { return state() == State::Ready; });
    Question question = aboutAPage;
    question.page.title = std::string(20'000, 'x');
    ask(question);
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(error(0), "bad_request");
}

} // namespace
} // namespace tarne::test
