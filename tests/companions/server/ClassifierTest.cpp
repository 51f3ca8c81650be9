#include "ServerFixtures.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using Reason = Unjudged::Reason;

TEST_F(ClassifierTest, AsksTheModelOnceForOnePageAndOneSetOfGoals) {
    classify(pageNamed(u"A film"_s));
    ASSERT_EQ(model.requests.size(), 1u);
    EXPECT_EQ(model.requests[0].url.toString(), u"https://model.example/ask?key=KEY"_s);
    answer(serviceVerdict(u"off_task"_s));
    classify(pageNamed(u"A film"_s));
    EXPECT_EQ(model.requests.size(), 1u);
    ASSERT_EQ(judgings.size(), 2u);
    EXPECT_EQ(judgement(0), Judgement::OffTask);
    EXPECT_EQ(source(0), VerdictSource::Model);
    EXPECT_EQ(judgement(1), Judgement::OffTask);
    EXPECT_EQ(source(1), VerdictSource::Cache);
}

TEST_F(ClassifierTest, AsksAnewForOtherGoalsAndForAnotherPage) {
    classify(pageNamed(u"A film"_s));
    classify(pageNamed(u"Another film"_s));
    classify(pageNamed(u"A film"_s), false, u"Study film"_s);
    EXPECT_EQ(model.requests.size(), 3u);
}

TEST_F(ClassifierTest, JoinsEqualQuestionsThatAreOpen) {
    for (int tab = 0; tab < 50; ++tab)
        classify(pageNamed(u"A film"_s));
    EXPECT_EQ(model.requests.size(), 1u);
    answer(serviceVerdict(u"off_task"_s));
    EXPECT_EQ(judgings.size(), 50u);
}

TEST_F(ClassifierTest, AsksAnewForAFreshAnswerWhichReplacesTheOldOne) {
    classify(pageNamed(u"A film"_s));
    answer(serviceVerdict(u"off_task"_s));
    classify(pageNamed(u"A film"_s), true);
    answer(serviceVerdict(u"on_task"_s));
    classify(pageNamed(u"A film"_s));
    ASSERT_EQ(judgings.size(), 3u);
    EXPECT_EQ(source(1), VerdictSource::Model);
    EXPECT_EQ(judgement(2), Judgement::OnTask);
    EXPECT_EQ(source(2), VerdictSource::Cache);
}

TEST_F(ClassifierTest, TakesTheUsersWordBeforeItsOwnMemory) {
    classify(pageNamed(u"A film"_s));
    answer(serviceVerdict(u"off_task"_s));
    classifier().addOverride(u"Write the report"_s, pageNamed(u"A film"_s));
    classify(pageNamed(u"A film"_s));
    classify(pageNamed(u"A film"_s), true);
    EXPECT_EQ(model.requests.size(), 1u);
    EXPECT_EQ(source(1), VerdictSource::Override);
    EXPECT_EQ(judgement(1), Judgement::OnTask);
    EXPECT_EQ(source(2), VerdictSource::Override);
}

TEST_F(ClassifierTest, HoldsAnOverrideForItsGoalsAndItsPageAlone) {
    classifier().addOverride(u"Study film"_s, pageNamed(u"A film"_s));
    classify(pageNamed(u"A film"_s));
    classify(pageNamed(u"Another film"_s), false, u"Study film"_s);
    EXPECT_EQ(model.requests.size(), 2u);
}

TEST_F(ClassifierTest, TellsTheModelOfTheLastTenOverridesByHostAndPath) {
    for (int number = 0; number < 12; ++number) {
        PageFacts page = pageNamed(u"A secret title"_s);
        page.path = u"/%1"_s.arg(number);
        classifier().addOverride(u"Write the report"_s, page);
        // Twice is once.
        classifier().addOverride(u"Write the report"_s, page);
    }
    classify(pageNamed(u"A film"_s));
    const QByteArray body = model.requests.at(0).body;
    EXPECT_TRUE(body.contains("example.org/11"));
    EXPECT_TRUE(body.contains("example.org/2\\"));
    EXPECT_FALSE(body.contains("example.org/1\\"));
    EXPECT_FALSE(body.contains("A secret title"));
}

TEST_F(ClassifierTest, HasThreeQuestionsWithTheModelAtOnce) {
    for (int number = 0; number < 5; ++number)
        classify(pageNamed(QString::number(number)));
    EXPECT_EQ(model.waitingCount(), 3u);
    answer(serviceVerdict(u"on_task"_s));
    EXPECT_EQ(model.waitingCount(), 3u);
    EXPECT_EQ(model.requests.size(), 4u);
    for (int number = 0; number < 4; ++number)
        answer(serviceVerdict(u"on_task"_s));
    EXPECT_EQ(judgings.size(), 5u);
}

TEST_F(ClassifierTest, AnswersFiftyTabsAtOnceWithVerdictsOrTheQuota) {
    for (int tab = 0; tab < 50; ++tab)
        classify(pageNamed(QString::number(tab)));
    while (model.waitingCount() > 0)
        answer(serviceVerdict(u"on_task"_s));
    ASSERT_EQ(judgings.size(), 50u);
    EXPECT_EQ(model.requests.size(), 10u);
    int refused = 0;
    for (const Judging &judging : judgings) {
        const auto *unjudged = std::get_if<Unjudged>(&judging);
        refused +=
            unjudged != nullptr && unjudged->reason == Reason::Quota && unjudged->retryAfter == 60s;
    }
    EXPECT_EQ(refused, 40);
}

TEST_F(ClassifierTest, WithoutAKeyAsksNobodyAndStillKnowsOverrides) {
    make(false);
    EXPECT_FALSE(classifier().hasKey());
    classify(pageNamed(u"A film"_s));
    EXPECT_EQ(unjudged(0).reason, Reason::NoKey);
    classifier().addOverride(u"Write the report"_s, pageNamed(u"A film"_s));
    classify(pageNamed(u"A film"_s));
    EXPECT_EQ(source(1), VerdictSource::Override);
    EXPECT_TRUE(model.requests.empty());
    EXPECT_EQ(classifier().leftToday(), 300);
}

TEST_F(ClassifierTest, TellsWhyThereIsNoVerdictAndForgetsThatItWasAsked) {
    classify(pageNamed(u"A film"_s));
    answer(TransportError{u"No connection."_s});
    classify(pageNamed(u"A film"_s));
    answer("<html>", 500);
    classify(pageNamed(u"A film"_s));
    answer("{}", 200);
    classify(pageNamed(u"A film"_s));
    answer(serviceVerdict(u"on_task"_s), 403);
    EXPECT_EQ(unjudged(0).reason, Reason::Offline);
    for (const std::size_t index : {1u, 2u, 3u})
        EXPECT_EQ(unjudged(index).reason, Reason::Model);
    classify(pageNamed(u"A film"_s));
    answer(serviceVerdict(u"on_task"_s));
    EXPECT_EQ(judgement(4), Judgement::OnTask);
}

TEST_F(ClassifierTest, TakesAnAnswerOutsideTheSchemaForUnsure) {
    classify(pageNamed(u"A film"_s));
    answer(serviceAnswer(u"The page is on_task."_s));
    EXPECT_EQ(judgement(0), Judgement::Unsure);
}

TEST_F(ClassifierTest, KeepsStillForAMinuteAfterARefusal) {
    for (const char *title : {"1", "2", "3", "4"})
        classify(pageNamed(QString::fromLatin1(title)));
    answer("{}", 429);
    // The fourth had waited for its turn, which came with the refusal.
    ASSERT_EQ(judgings.size(), 2u);
    EXPECT_EQ(unjudged(0).retryAfter, 60s);
    EXPECT_EQ(unjudged(1).reason, Reason::Quota);
    classify(pageNamed(u"5"_s));
    EXPECT_EQ(unjudged(2).retryAfter, 60s);
    EXPECT_EQ(model.requests.size(), 3u);
    now += 60s;
    classify(pageNamed(u"5"_s));
    EXPECT_EQ(model.requests.size(), 4u);
    for (int open = 0; open < 3; ++open)
        answer(serviceVerdict(u"on_task"_s));
    EXPECT_EQ(judgings.size(), 6u);
}

TEST_F(ClassifierTest, KeepsStillForAsLongAsTheServiceSays) {
    classify(pageNamed(u"1"_s));
    answer(HTTPResponse{.status = 429, .body = "{}", .retryAfter = "7"});
    EXPECT_EQ(unjudged(0).retryAfter, 7s);
    for (const char *odd : {"", "soon", "-3", "0", "Wed, 21 Oct 2026 07:28:00 GMT"}) {
        now += 60s;
        const std::size_t index = judgings.size();
        classify(pageNamed(u"1"_s));
        answer(HTTPResponse{.status = 429, .body = "{}", .retryAfter = odd});
        EXPECT_EQ(unjudged(index).retryAfter, 60s) << odd;
    }
}

TEST_F(ClassifierTest, GivesUpOnAModelThatDoesNotAnswerAndDropsWhatComesLater) {
    make(true, 1ms);
    for (const char *title : {"1", "2", "3", "4"})
        classify(pageNamed(QString::fromLatin1(title)));
    context.restart();
    while (judgings.size() < 4)
        context.run_one();
    for (std::size_t index = 0; index < 4; ++index)
        EXPECT_EQ(unjudged(index).reason, Reason::Offline);
    const std::size_t asked = model.waitingCount();
    for (std::size_t late = 0; late < asked; ++late)
        answer(serviceVerdict(u"on_task"_s));
    EXPECT_EQ(judgings.size(), 4u);
    // There is room for three again.
    make(true);
    classify(pageNamed(u"1"_s));
    answer(serviceVerdict(u"on_task"_s));
    EXPECT_EQ(judgement(4), Judgement::OnTask);
}

TEST_F(ClassifierTest, CanBeAskedAgainByWhomItAnswers) {
    classifier().classify(u"Write"_s, pageNamed(u"A film"_s), false, [this](const Judging &first) {
        judgings.push_back(first);
        classifier().classify(u"Write"_s, pageNamed(u"A film"_s), false,
                              [this](const Judging &second) { judgings.push_back(second); });
    });
    answer(TransportError{u"No connection."_s});
    answer(serviceVerdict(u"on_task"_s));
    ASSERT_EQ(judgings.size(), 2u);
    EXPECT_EQ(judgement(1), Judgement::OnTask);
}

} // namespace
} // namespace tarne::test
