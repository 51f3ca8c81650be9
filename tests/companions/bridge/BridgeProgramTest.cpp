// The real bridge beside the real store, as TARNE's controllers write it, and the real server.

#include "BridgeProgram.h"
#include "EventLoop.h"
#include "Proof.h"
#include "Rounds.h"

#include <random>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

TEST_F(ABridge, SaysNothingBeforeItIsGreetedAndEndsWithItsInput) {
    startTarne();
    bridge.emplace(QProcessEnvironment::systemEnvironment());
    EXPECT_EQ(bridge->next(300ms), QJsonObject());
    EXPECT_EQ(bridge->end(), 0);
}

TEST_F(ABridge, RefusesAQuestionBeforeItIsGreeted) {
    bridge.emplace(QProcessEnvironment::systemEnvironment());
    EXPECT_EQ(answerTo(R"({"v":1,"id":8,"op":"state"})")[u"error"], u"bad_request"_s);
}

TEST_F(ABridge, EndsAtALengthThatNoMessageHas) {
    startBridge(u"unavailable"_s);
    bridge->sayBytes("\xff\xff\xff\xff");
    EXPECT_EQ(bridge->waitForEnd(), 0);
}

TEST_F(ABridge, AnswersWhatIsNoMessageAndGoesOn) {
    startBridge(u"unavailable"_s);
    EXPECT_EQ(answerTo("no JSON"),
              (QJsonObject{{u"v"_s, 1}, {u"id"_s, 0}, {u"error"_s, u"bad_request"_s}}));
    EXPECT_EQ(answerTo(QByteArray(500'000, ' '))[u"id"], 0);
    EXPECT_EQ(answerTo(R"({"v":1,"id":9,"op":"key"})")[u"id"], 9);
}

TEST_F(ABridge, TellsOfTheStoreWhenItComesUp) {
    startBridge(u"unavailable"_s);
    startTarne();
    expectSession(u"inactive"_s, 5s);
}

TEST_F(ABridge, TellsASessionsStartPauseResumeAndEnd) {
    startTarne();
    startBridge(u"inactive"_s);
    tellTarne("start 1500 Write the report");
    expectSession(u"active"_s, 2s);
    EXPECT_EQ(lastSession[u"goals"], u"Write the report"_s);
    EXPECT_EQ(lastSession[u"duration"], 1500.0);
    const double now = static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000.0;
    EXPECT_NEAR(lastSession[u"ends"].toDouble(), now + 1500.0, 5.0);
    const QString id = lastSession[u"id"].toString();
    EXPECT_EQ(id.size(), 36);
    tellTarne("pause");
    expectSession(u"inactive"_s, 3s);
    tellTarne("resume");
    expectSession(u"active"_s, 2s);
    EXPECT_EQ(lastSession[u"id"], id);
    tellTarne("end");
    expectSession(u"inactive"_s, 2s);
}

TEST_F(ABridge, TellsASessionOnceWhileTwoWritersAlternate) {
    startTarne(500ms);
    startBridge(u"inactive"_s);
    tellTarne("start 1500 Write the report");
    expectSession(u"active"_s, 2s);
    EXPECT_EQ(bridge->next(10s), QJsonObject());
    tellTarne("end");
    expectSession(u"inactive"_s, 3s);
}

TEST_F(ABridge, GoesOnThroughAMainThreadThatBlocksForFiveSeconds) {
    startTarne();
    startBridge(u"inactive"_s);
    tellTarne("start 1500 Write the report");
    expectSession(u"active"_s, 2s);
    tellTarne("block 5000");
    expectSessionToGoOn(7s);
}

TEST_F(ABridge, SeesAKillWithinASecondAndTheSameSessionAfterIt) {
    startTarne(500ms);
    startBridge(u"inactive"_s);
    tellTarne("start 1500 Write the report");
    expectSession(u"active"_s, 2s);
    const QJsonObject before = lastSession;
    for (int kill = 0; kill < 3; ++kill) {
        killTarne();
        expectSession(u"inactive"_s, 2s);
        EXPECT_EQ(bridge->next(1500ms), QJsonObject());
        // Now both controllers have the session, each under an id of its own.
        startTarne(500ms);
        expectSession(u"active"_s, 2s);
        EXPECT_EQ(lastSession[u"id"], before[u"id"]);
        EXPECT_NEAR(lastSession[u"ends"].toDouble(), before[u"ends"].toDouble(), 3.0);
        EXPECT_EQ(bridge->next(2s), QJsonObject());
    }
}

TEST_F(ABridge, SeesAQuit) {
    startTarne();
    startBridge(u"inactive"_s);
    tellTarne("start 1500 Write the report");
    expectSession(u"active"_s, 2s);
    quitTarne();
    expectSession(u"inactive"_s, 3s);
}

TEST_F(ABridge, IsNotWokenWithoutASession) {
    startTarne();
    startBridge(u"inactive"_s);
    EXPECT_EQ(bridge->next(1500ms), QJsonObject());
    const int before = bridge->wakes();
    // TARNE publishes, and changes nothing.
    EXPECT_EQ(bridge->next(4s), QJsonObject());
    EXPECT_EQ(bridge->wakes() - before, 0);
    quitTarne();
    EXPECT_EQ(bridge->next(1500ms), QJsonObject());
    const int after = bridge->wakes();
    EXPECT_EQ(bridge->next(2s), QJsonObject());
    EXPECT_EQ(bridge->wakes() - after, 0);
}

TEST_F(ABridge, TellsOfAStoreThatGoes) {
    startTarne();
    startBridge(u"inactive"_s);
    quitTarne();
    QDir(dataFolder()).removeRecursively();
    expectSession(u"unavailable"_s, 5s);
}

TEST_F(ABridge, AnswersItselfWithoutASessionWithoutGoalsAndWithoutAServer) {
    startTarne();
    startBridge(u"inactive"_s);
    EXPECT_EQ(answerTo(question("classify"))[u"error"], u"no_session"_s);
    EXPECT_EQ(answerTo(R"({"v":1,"id":8,"op":"state"})")[u"error"], u"no_server"_s);
    tellTarne("start 1500 ,");
    expectSession(u"active"_s, 2s);
    EXPECT_EQ(lastSession[u"goals"], u","_s);
    EXPECT_EQ(answerTo(question("classify"))[u"error"], u"no_goals"_s);
    tellTarne("end");
    expectSession(u"inactive"_s, 2s);
    tellTarne("start 1500 Write");
    expectSession(u"active"_s, 2s);
    EXPECT_EQ(answerTo(question("classify")),
              (QJsonObject{{u"v"_s, 1}, {u"id"_s, 7}, {u"error"_s, u"no_server"_s}}));
}

TEST_F(ABridge, RelaysToTheServerAndFollowsItOverRestarts) {
    startTarne();
    startServer(3000);
    startBridge(u"inactive"_s, u"no_key"_s);
    tellTarne("start 1500 Write the report");
    expectSession(u"active"_s, 2s);
    EXPECT_EQ(answerTo(question("classify"))[u"error"], u"no_key"_s);
    EXPECT_EQ(answerTo(question("override"))[u"ok"], true);
    EXPECT_EQ(answerTo(question("classify"))[u"source"], u"override"_s);
    EXPECT_EQ(answerTo(question("classify", "Another film"))[u"error"], u"no_key"_s);
    EXPECT_EQ(answerTo(R"({"v":1,"id":8,"op":"state"})"),
              (QJsonObject{{u"v"_s, 1}, {u"id"_s, 8}, {u"key"_s, false}, {u"left_today"_s, 300}}));

    terminateServer();
    EXPECT_EQ(bridge->next()[u"state"], u"absent"_s);
    startServer(3001, u"a-key"_s);
    EXPECT_EQ(bridge->next()[u"state"], u"ready"_s);
    killServer();
    EXPECT_EQ(bridge->next()[u"state"], u"absent"_s);
    // Beside the name that the killed one has left.
    startServer(3000, u"a-key"_s);
    EXPECT_EQ(bridge->next()[u"state"], u"ready"_s);
    EXPECT_EQ(answerTo(question("override"))[u"ok"], true);
}

TEST_F(ABridge, KilledAt200RandomInstantsHarmsNothingAndTheNextOneTellsTheSame) {
    constexpr int kills = rounds(200);
    std::minstd_rand random(proofSeed());
    startTarne();
    startServer(3000);
    startBridge(u"inactive"_s, u"no_key"_s);
    tellTarne("start 10000 Write the report");
    expectSession(u"active"_s, 2s);
    const QJsonObject session = lastSession;
    const double before = lastUpdate();
    int answered = 0;
    int harmed = 0;
    for (int kill = 0; kill < kills; ++kill) {
        if (kill % 2 == 0) {
            // In its start.
            bridge.emplace(m_environment);
            bridge->greet();
            std::ignore = bridge->next(std::chrono::milliseconds(random() % 20));
        } else {
            startBridge(u"active"_s, u"no_key"_s);
            EXPECT_EQ(lastSession[u"id"], session[u"id"]);
            EXPECT_NEAR(lastSession[u"ends"].toDouble(), session[u"ends"].toDouble(), 3.0);
            // With questions under way, each of which leaves its override with the server.
            // Half of these kills come after an answer, however busy the machine is.
            const bool awaitsAnswer = kill % 4 == 3;
            for (unsigned asked = random() % 4 + awaitsAnswer; asked > 0; --asked)
                bridge->say(question("override"));
            const int instant = awaitsAnswer ? patience : static_cast<int>(random() % 20);
            answered += bridge->next(std::chrono::milliseconds(instant)).contains(u"ok") ? 1 : 0;
        }
        bridge->kill();
        harmed += isStoreSound() ? 0 : 1;
    }
    startBridge(u"active"_s, u"no_key"_s);
    EXPECT_EQ(harmed, 0);
    EXPECT_GT(answered, 0);
    EXPECT_EQ(answerTo(question("classify"))[u"source"], u"override"_s);
    EXPECT_TRUE(serveUntil([&] { return lastUpdate() > before; })) << "TARNE goes on all the while";
    printProof("bridge-kills",
               QByteArray::number(kills) + " kills, " + QByteArray::number(answered) +
                   " of them after an answer, store harmed by " + QByteArray::number(harmed));
}

TEST_F(ABridge, AsksAboutTheSessionThatIsActiveAndNoOther) {
    startTarne();
    startServer(3000);
    startBridge(u"inactive"_s, u"no_key"_s);
    tellTarne("start 1500 Write");
    expectSession(u"active"_s, 2s);
    EXPECT_EQ(answerTo(question("override"))[u"ok"], true);
    tellTarne("end");
    expectSession(u"inactive"_s, 2s);
    EXPECT_EQ(answerTo(question("classify"))[u"error"], u"no_session"_s);
    tellTarne("start 1500 Read");
    expectSession(u"active"_s, 2s);
    // What was said for other goals says nothing for these.
    EXPECT_EQ(answerTo(question("classify"))[u"error"], u"no_key"_s);
}

} // namespace
} // namespace tarne::test
