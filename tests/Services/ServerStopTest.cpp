#include "ServerFixture.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

class ServerStopTest : public ServerFixture {
protected:
    /// The sweep of the ports and of the strays, and the second that it is given.
    static QStringList sweep() {
        QStringList calls;
        for (const int port :
             {3000, 3000, 3001, 3002, 3003, 3004, 3005, 3006, 3007, 3008, 3009, 3010})
            calls += u"/usr/bin/lsof -ti :%1"_s.arg(port);
        return calls + QStringList{u"/usr/bin/pkill -f tarne-server"_s, u"/usr/bin/pkill -f node"_s,
                                   u"sleep 1000000 us"_s};
    }
};

TEST_F(ServerStopTest, AStopWithoutAChildChangesNothing) {
    manager->stopServer();
    EXPECT_EQ(log.lines(), QStringList{u"🔴 No server process to stop"_s});
    EXPECT_EQ(time.pendingBlockCount(), 0u);
}

TEST_F(ServerStopTest, AStopTerminatesTheChildAndWaitsThreeSecondsAtMost) {
    start();
    manager->stopServer();
    EXPECT_EQ(journal, (QStringList{u"🔴 Stopping server..."_s, u"terminate"_s, u"wait 3000 ms"_s,
                                    u"🔴 Server process terminated"_s}));
}

TEST_F(ServerStopTest, AChildThatIgnoresTerminateIsKilledAndNotWaitedFor) {
    start();
    launcher.ignoresTerminate = true;
    manager->stopServer();
    EXPECT_EQ(journal,
              (QStringList{u"🔴 Stopping server..."_s, u"terminate"_s, u"wait 3000 ms"_s,
                           u"⚠️ Server didn't terminate gracefully, force killing..."_s,
                           u"forceKill"_s, u"🔴 Server process terminated"_s}));
}

TEST_F(ServerStopTest, AChildThatExitsAsTheWaitEndsIsNotKilled) {
    start();
    launcher.ignoresTerminate = true;
    launcher.exitsBehindTheWait = true;
    manager->stopServer();
    EXPECT_EQ(journal, (QStringList{u"🔴 Stopping server..."_s, u"terminate"_s, u"wait 3000 ms"_s,
                                    u"🔴 Server process terminated"_s}));
}

TEST_F(ServerStopTest, TheStoppedStateIsReportedThroughTheMainQueue) {
    start();
    manager->stopServer();
    EXPECT_TRUE(manager->isRunning());
    time.runPending();
    EXPECT_FALSE(manager->isRunning());
}

TEST_F(ServerStopTest, AStopForgetsTheChild) {
    start();
    launcher.ignoresTerminate = true;
    manager->stopServer();
    log.takeLines();
    manager->stopServer();
    EXPECT_EQ(log.lines(), QStringList{u"🔴 No server process to stop"_s});
}

TEST_F(ServerStopTest, AStopKeepsTheErrorAndTheHealthTimer) {
    start();
    manager->performHealthCheck();
    health.answer(503);
    time.runPending();
    manager->stopServer();
    time.runPending();
    EXPECT_EQ(manager->serverError(), u"Server not responding properly"_s);
    EXPECT_EQ(time.timerCount(), 1u);
}

TEST_F(ServerStopTest, AStopThatEndsTheChildWithAStatusLeavesItInTheError) {
    start();
    launcher.statusOnTerminate = 15;
    manager->stopServer();
    time.runPending();
    EXPECT_EQ(manager->serverError(), u"Server exited with code 15"_s);
    EXPECT_EQ(log.lines().last(), u"🔴 Server process terminated with status: 15"_s);
}

TEST_F(ServerStopTest, AnExitWithAStatusIsShown) {
    start();
    launcher.last().exit(7);
    EXPECT_TRUE(manager->isRunning());
    time.runPending();
    EXPECT_FALSE(manager->isRunning());
    EXPECT_EQ(manager->serverError(), u"Server exited with code 7"_s);
    EXPECT_EQ(log.lines(), QStringList{u"🔴 Server process terminated with status: 7"_s});
}

TEST_F(ServerStopTest, AnExitWithStatusZeroSetsNoError) {
    start();
    launcher.last().exit(0);
    time.runPending();
    EXPECT_FALSE(manager->isRunning());
    EXPECT_EQ(manager->serverError(), std::nullopt);
    EXPECT_EQ(log.lines(), QStringList{u"🔴 Server process terminated with status: 0"_s});
}

TEST_F(ServerStopTest, AnExitWithStatusZeroKeepsTheErrorThatWasThere) {
    start();
    manager->performHealthCheck();
    health.answer(503);
    time.runPending();
    launcher.last().exit(0);
    time.runPending();
    EXPECT_FALSE(manager->isRunning());
    EXPECT_EQ(manager->serverError(), u"Server not responding properly"_s);
}

TEST_F(ServerStopTest, AnExitRestartsNothing) {
    start();
    launcher.last().exit(7);
    time.advance(120s);
    EXPECT_EQ(launcher.children.size(), 1u);
}

TEST_F(ServerStopTest, AfterAnExitThereIsNothingToStop) {
    start();
    launcher.last().exit(0);
    time.runPending();
    log.takeLines();
    manager->stopServer();
    EXPECT_EQ(log.lines(), QStringList{u"🔴 No server process to stop"_s});
}

TEST_F(ServerStopTest, AChildThatExitsDuringItsLaunchEndsUpStopped) {
    launcher.statusAtOnce = 7;
    manager->startServer();
    time.runPending();
    EXPECT_FALSE(manager->isRunning());
    EXPECT_EQ(manager->serverError(), u"Server exited with code 7"_s);
    EXPECT_EQ(log.lines().last(), u"🔴 Server process terminated with status: 7"_s);
}

TEST_F(ServerStopTest, AChildThatExitsDuringItsLaunchWithZeroEndsUpStoppedWithoutAnError) {
    launcher.statusAtOnce = 0;
    manager->startServer();
    time.runPending();
    EXPECT_FALSE(manager->isRunning());
    EXPECT_EQ(manager->serverError(), std::nullopt);
    EXPECT_EQ(log.lines().last(), u"🔴 Server process terminated with status: 0"_s);
}

TEST_F(ServerStopTest, ARestartStartsOneSecondAfterItsStop) {
    start();
    manager->restartServer();
    time.runPending();
    EXPECT_FALSE(manager->isRunning());
    time.advance(999ms);
    EXPECT_EQ(launcher.children.size(), 1u);
    time.advance(2ms);
    EXPECT_EQ(launcher.children.size(), 2u);
    EXPECT_TRUE(manager->isRunning());
}

TEST_F(ServerStopTest, ARestartHoldsWhenTheMainThreadBlocksPastItsDelay) {
    start();
    manager->restartServer();
    time.block(10s);
    time.runPending();
    EXPECT_EQ(launcher.children.size(), 2u);
    EXPECT_TRUE(manager->isRunning());
}

TEST_F(ServerStopTest, ARestartWithNothingRunningStarts) {
    manager->restartServer();
    time.advance(1s);
    EXPECT_TRUE(manager->isRunning());
}

TEST_F(ServerStopTest, ForceCleanupStopsThenSweepsThenSleepsASecondAndStartsNothing) {
    ports.busy = {3000}; // The sweep begins with port 3000, not with the server's.
    start();
    manager->forceCleanup();
    const QStringList stop{u"🧹 Force cleaning up all server processes..."_s,
                           u"🔴 Stopping server..."_s, u"terminate"_s, u"wait 3000 ms"_s,
                           u"🔴 Server process terminated"_s};
    EXPECT_EQ(journal, stop + sweep());
    time.advance(10s);
    EXPECT_EQ(launcher.children.size(), 1u);
}

TEST_F(ServerStopTest, ForceCleanupWithoutAChildSweepsAllTheSame) {
    manager->forceCleanup();
    const QStringList noStop{u"🧹 Force cleaning up all server processes..."_s,
                             u"🔴 No server process to stop"_s};
    EXPECT_EQ(journal, noStop + sweep());
}

TEST_F(ServerStopTest, ASavedKeyRestartsARunningServerWithTheNewKey) {
    start();
    manager->updateAPIKey(u"new"_s);
    time.advance(1s);
    ASSERT_EQ(launcher.children.size(), 2u);
    EXPECT_EQ(launcher.last().launch.environment.at(u"GEMINI_API_KEY"_s), u"new"_s);
}

TEST_F(ServerStopTest, ASavedKeyStartsNothingWhileTheServerIsStopped) {
    manager->updateAPIKey(u"new"_s);
    time.advance(10s);
    EXPECT_EQ(manager->getAPIKey(), u"new"_s);
    EXPECT_TRUE(launcher.calls.isEmpty());
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(ServerStopTest, AKeyThatCannotBeSavedRestartsAllTheSame) {
    start();
    keychain.failsToAdd = true;
    manager->updateAPIKey(u"new"_s);
    time.advance(1s);
    EXPECT_EQ(launcher.children.size(), 2u);
}

TEST_F(ServerStopTest, WithoutAStoredKeyThereIsNoneToGet) {
    EXPECT_EQ(manager->getAPIKey(), std::nullopt);
}

TEST_F(ServerStopTest, DestroyingItStopsTheServer) {
    start();
    manager.reset();
    EXPECT_FALSE(launcher.last().isRunning());
    EXPECT_EQ(time.timerCount(), 0u);
    time.advance(60s);
    EXPECT_EQ(log.lines().last(), u"🔴 Server process terminated with status: 0"_s);
}

} // namespace
} // namespace tarne::test
