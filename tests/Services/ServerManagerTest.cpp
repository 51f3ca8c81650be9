#include "ServerFixture.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne {
namespace {

class ServerManagerTest : public ServerFixture {};

/// What every launch logs, from the search in the bundle's surroundings on.
QStringList linesOfASuccessfulStart() {
    return {u"🔍 Starting search from: /opt/tarne/bin"_s,
            u"🔍 Checking [0]: /opt/tarne/tarne-server"_s,
            u"🔍 Checking [1]: /opt/tarne-server"_s,
            u"🔍 Checking [2]: //tarne-server"_s,
            u"🔍 Reached root or no change, stopping search"_s,
            u"🔍 Also checking working directory: /home/user/tarne-server"_s,
            u"🟡 Using server from working directory: /home/user/tarne-server"_s,
            u"🔍 Using port: 3000 (Safari extension will auto-discover)"_s,
            u"🔍 Will pass port 3000 as argument to server"_s,
            u"🔍 Starting server with arguments: [\"3000\"]"_s,
            u"🟢 Server started successfully on port 3000"_s};
}

TEST_F(ServerManagerTest, IsNeitherRunningNorFailedBeforeTheFirstStart) {
    EXPECT_FALSE(manager->isRunning());
    EXPECT_EQ(manager->serverError(), std::nullopt);
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(ServerManagerTest, AStartLogsItsStepsInOrder) {
    manager->startServer();
    EXPECT_EQ(log.lines(), linesOfASuccessfulStart());
}

TEST_F(ServerManagerTest, AStartSweepsThenSleepsTwoSecondsThenLooksForAPort) {
    manager->startServer();
    QStringList expected;
    for (const int port : {3000, 3000, 3001, 3002, 3003, 3004, 3005, 3006, 3007, 3008, 3009, 3010})
        expected += u"/usr/bin/lsof -ti :%1"_s.arg(port);
    expected += {u"/usr/bin/pkill -f tarne-server"_s, u"/usr/bin/pkill -f node"_s,
                 u"/usr/bin/pkill -f tarne-server"_s, u"sleep 2000000 us"_s};
    EXPECT_EQ(tools.calls, expected);
    EXPECT_EQ(ports.tried, std::vector{3000});
}

TEST_F(ServerManagerTest, TheServerGetsItsPortAsArgumentAndInItsEnvironment) {
    manager->startServer();
    EXPECT_EQ(launcher.last().launch.executable, server);
    EXPECT_EQ(launcher.last().launch.arguments, QStringList{u"3000"_s});
    EXPECT_EQ(launcher.last().launch.environment,
              (std::map<QString, QString>{{u"PORT"_s, u"3000"_s}}));
}

TEST_F(ServerManagerTest, AStoredKeyIsInTheServersEnvironmentAndNowhereInTheLog) {
    keychain.items[{u"com.tarne.app"_s, u"GeminiAPIKey"_s}] = "very-secret";
    manager->startServer();
    EXPECT_EQ(launcher.last().launch.environment.at(u"GEMINI_API_KEY"_s), u"very-secret"_s);
    EXPECT_FALSE(log.lines().join(u'\n').contains(u"very-secret"_s));
}

TEST_F(ServerManagerTest, AnEmptyStoredKeyIsTreatedLikeNone) {
    keychain.items[{u"com.tarne.app"_s, u"GeminiAPIKey"_s}] = "";
    manager->startServer();
    EXPECT_FALSE(launcher.last().launch.environment.contains(u"GEMINI_API_KEY"_s));
}

TEST_F(ServerManagerTest, ABusyPortMovesArgumentAndEnvironmentToTheNext) {
    ports.busy = {3000};
    manager->startServer();
    EXPECT_EQ(launcher.last().launch.arguments, QStringList{u"3001"_s});
    EXPECT_EQ(launcher.last().launch.environment.at(u"PORT"_s), u"3001"_s);
    EXPECT_EQ(log.lines().last(), u"🟢 Server started successfully on port 3001"_s);
}

TEST_F(ServerManagerTest, WithAllPortsBusyTheLaunchGoesAheadOnTheFirst) {
    for (int port = 3000; port <= 3100; ++port)
        ports.busy.insert(port);
    manager->startServer();
    EXPECT_EQ(ports.tried.size(), 101u);
    EXPECT_EQ(ports.tried.back(), 3100);
    EXPECT_EQ(launcher.last().launch.arguments, QStringList{u"3000"_s});
    EXPECT_EQ(log.lines(), linesOfASuccessfulStart());
}

TEST_F(ServerManagerTest, TheLastPortOfTheRangeIsUsed) {
    for (int port = 3000; port < 3100; ++port)
        ports.busy.insert(port);
    manager->startServer();
    EXPECT_EQ(launcher.last().launch.arguments, QStringList{u"3100"_s});
}

TEST_F(ServerManagerTest, EachStartBeginsItsPortSearchAnew) {
    ports.busy = {3000};
    start();
    ports.busy.clear();
    launcher.last().exit(0);
    time.runPending();
    manager->startServer();
    EXPECT_EQ(launcher.last().launch.arguments, QStringList{u"3000"_s});
}

TEST_F(ServerManagerTest, RunningIsReportedThroughTheMainQueue) {
    manager->startServer();
    EXPECT_FALSE(manager->isRunning());
    time.runPending();
    EXPECT_TRUE(manager->isRunning());
}

TEST_F(ServerManagerTest, ASuccessfulStartClearsAnEarlierError) {
    launcher.failure = u"Permission denied"_s;
    manager->startServer();
    launcher.failure.reset();
    manager->startServer();
    EXPECT_NE(manager->serverError(), std::nullopt);
    time.runPending();
    EXPECT_EQ(manager->serverError(), std::nullopt);
}

TEST_F(ServerManagerTest, IsRunningChangesBeforeTheErrorIsCleared) {
    launcher.failure = u"Permission denied"_s;
    manager->startServer();
    launcher.failure.reset();
    QStringList order;
    QObject::connect(manager.get(), &ServerManager::isRunningChanged,
                     [&] { order += u"running"_s; });
    QObject::connect(manager.get(), &ServerManager::serverErrorChanged,
                     [&] { order += u"error"_s; });
    manager->startServer();
    time.runPending();
    EXPECT_EQ(order, (QStringList{u"running"_s, u"error"_s}));
}

TEST_F(ServerManagerTest, ASecondStartWhileRunningDoesNothing) {
    start();
    manager->startServer();
    time.runPending();
    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_TRUE(tools.calls.isEmpty());
    EXPECT_EQ(launcher.children.size(), 1u);
}

TEST_F(ServerManagerTest, WithoutAnExecutableTheErrorSaysSoAndNothingIsSwept) {
    bundle.files.clear();
    manager->startServer();
    time.runPending();
    EXPECT_EQ(manager->serverError(), u"Server binary not found in app bundle or project root"_s);
    EXPECT_FALSE(manager->isRunning());
    EXPECT_TRUE(tools.calls.isEmpty());
    EXPECT_TRUE(launcher.calls.isEmpty());
    EXPECT_EQ(log.lines().last(3), (QStringList{u"❌ Server binary not found at expected paths"_s,
                                                u"   Checked bundle: /opt/tarne/bin"_s,
                                                u"   Checked project root for tarne-server"_s}));
}

TEST_F(ServerManagerTest, AFailedLaunchShowsTheSystemsReason) {
    launcher.failure = u"Permission denied"_s;
    manager->startServer();
    EXPECT_EQ(manager->serverError(), u"Failed to start server: Permission denied"_s);
    EXPECT_EQ(log.lines().last(), u"❌ Failed to start server: Permission denied"_s);
    time.advance(10s);
    EXPECT_FALSE(manager->isRunning());
    EXPECT_TRUE(health.addresses.isEmpty());
}

TEST_F(ServerManagerTest, AFailedLaunchLeavesNothingToStop) {
    launcher.failure = u"Permission denied"_s;
    manager->startServer();
    log.takeLines();
    manager->stopServer();
    EXPECT_EQ(log.lines(), QStringList{u"🔴 No server process to stop"_s});
}

TEST_F(ServerManagerTest, AStopWithoutAChildChangesNothing) {
    manager->stopServer();
    EXPECT_EQ(log.lines(), QStringList{u"🔴 No server process to stop"_s});
    EXPECT_EQ(time.pendingBlockCount(), 0u);
}

TEST_F(ServerManagerTest, AStopTerminatesTheChildAndWaitsThreeSecondsAtMost) {
    start();
    launcher.calls.clear();
    manager->stopServer();
    EXPECT_EQ(launcher.calls, (QStringList{u"terminate"_s, u"wait 3000 ms"_s}));
    EXPECT_EQ(log.lines(),
              (QStringList{u"🔴 Stopping server..."_s, u"🔴 Server process terminated"_s}));
}

TEST_F(ServerManagerTest, AChildThatIgnoresTerminateIsKilledAndNotWaitedFor) {
    start();
    launcher.calls.clear();
    launcher.ignoresTerminate = true;
    manager->stopServer();
    EXPECT_EQ(launcher.calls, (QStringList{u"terminate"_s, u"wait 3000 ms"_s, u"forceKill"_s}));
    EXPECT_EQ(log.lines(),
              (QStringList{u"🔴 Stopping server..."_s,
                           u"⚠️ Server didn't terminate gracefully, force killing..."_s,
                           u"🔴 Server process terminated"_s}));
}

TEST_F(ServerManagerTest, TheStoppedStateIsReportedThroughTheMainQueue) {
    start();
    manager->stopServer();
    EXPECT_TRUE(manager->isRunning());
    time.runPending();
    EXPECT_FALSE(manager->isRunning());
}

TEST_F(ServerManagerTest, AStopForgetsTheChild) {
    start();
    launcher.ignoresTerminate = true;
    manager->stopServer();
    log.takeLines();
    manager->stopServer();
    EXPECT_EQ(log.lines(), QStringList{u"🔴 No server process to stop"_s});
}

TEST_F(ServerManagerTest, AStopKeepsTheErrorAndTheHealthTimer) {
    start();
    manager->performHealthCheck();
    health.answer(503);
    time.runPending();
    manager->stopServer();
    time.runPending();
    EXPECT_EQ(manager->serverError(), u"Server not responding properly"_s);
    EXPECT_EQ(time.timerCount(), 1u);
}

TEST_F(ServerManagerTest, AStopThatEndsTheChildWithAStatusLeavesItInTheError) {
    start();
    launcher.statusOnTerminate = 15;
    manager->stopServer();
    time.runPending();
    EXPECT_EQ(manager->serverError(), u"Server exited with code 15"_s);
    EXPECT_EQ(log.lines().last(), u"🔴 Server process terminated with status: 15"_s);
}

TEST_F(ServerManagerTest, AnExitWithAStatusIsShown) {
    start();
    launcher.last().exit(7);
    EXPECT_TRUE(manager->isRunning());
    time.runPending();
    EXPECT_FALSE(manager->isRunning());
    EXPECT_EQ(manager->serverError(), u"Server exited with code 7"_s);
    EXPECT_EQ(log.lines(), QStringList{u"🔴 Server process terminated with status: 7"_s});
}

TEST_F(ServerManagerTest, AnExitWithStatusZeroKeepsTheErrorAsItIs) {
    start();
    launcher.last().exit(0);
    time.runPending();
    EXPECT_FALSE(manager->isRunning());
    EXPECT_EQ(manager->serverError(), std::nullopt);
    EXPECT_EQ(log.lines(), QStringList{u"🔴 Server process terminated with status: 0"_s});
}

TEST_F(ServerManagerTest, AnExitRestartsNothing) {
    start();
    launcher.last().exit(7);
    time.advance(120s);
    EXPECT_EQ(launcher.children.size(), 1u);
}

TEST_F(ServerManagerTest, AfterAnExitThereIsNothingToStop) {
    start();
    launcher.last().exit(0);
    time.runPending();
    log.takeLines();
    manager->stopServer();
    EXPECT_EQ(log.lines(), QStringList{u"🔴 No server process to stop"_s});
}

TEST_F(ServerManagerTest, AChildThatExitsDuringItsLaunchEndsUpStopped) {
    launcher.statusAtOnce = 7;
    manager->startServer();
    time.runPending();
    EXPECT_FALSE(manager->isRunning());
    EXPECT_EQ(manager->serverError(), u"Server exited with code 7"_s);
    EXPECT_EQ(log.lines().last(), u"🔴 Server process terminated with status: 7"_s);
}

TEST_F(ServerManagerTest, ARestartStartsOneSecondAfterItsStop) {
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

TEST_F(ServerManagerTest, ARestartHoldsWhenTheMainThreadBlocksPastItsDelay) {
    start();
    manager->restartServer();
    time.block(10s);
    time.runPending();
    EXPECT_EQ(launcher.children.size(), 2u);
    EXPECT_TRUE(manager->isRunning());
}

TEST_F(ServerManagerTest, ARestartWithNothingRunningStarts) {
    manager->restartServer();
    time.advance(1s);
    EXPECT_TRUE(manager->isRunning());
}

TEST_F(ServerManagerTest, ForceCleanupStopsSweepsAndSleepsASecond) {
    start();
    manager->forceCleanup();
    EXPECT_EQ(log.lines().first(2),
              (QStringList{u"🧹 Force cleaning up all server processes..."_s,
                           u"🔴 Stopping server..."_s}));
    EXPECT_EQ(tools.calls.size(), 15);
    EXPECT_EQ(tools.calls.first(), u"/usr/bin/lsof -ti :3000"_s);
    EXPECT_EQ(tools.calls.at(13), u"/usr/bin/pkill -f node"_s);
    EXPECT_EQ(tools.calls.last(), u"sleep 1000000 us"_s);
    EXPECT_EQ(launcher.children.size(), 1u);
}

TEST_F(ServerManagerTest, ASavedKeyRestartsARunningServerWithTheNewKey) {
    start();
    manager->updateAPIKey(u"new"_s);
    time.advance(1s);
    ASSERT_EQ(launcher.children.size(), 2u);
    EXPECT_EQ(launcher.last().launch.environment.at(u"GEMINI_API_KEY"_s), u"new"_s);
}

TEST_F(ServerManagerTest, ASavedKeyStartsNothingWhileTheServerIsStopped) {
    manager->updateAPIKey(u"new"_s);
    time.advance(10s);
    EXPECT_EQ(manager->getAPIKey(), u"new"_s);
    EXPECT_TRUE(launcher.calls.isEmpty());
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(ServerManagerTest, AKeyThatCannotBeSavedRestartsAllTheSame) {
    start();
    keychain.failsToAdd = true;
    manager->updateAPIKey(u"new"_s);
    time.advance(1s);
    EXPECT_EQ(launcher.children.size(), 2u);
}

TEST_F(ServerManagerTest, WithoutAStoredKeyThereIsNoneToGet) {
    EXPECT_EQ(manager->getAPIKey(), std::nullopt);
}

TEST_F(ServerManagerTest, DestroyingItStopsTheServer) {
    start();
    manager.reset();
    EXPECT_FALSE(launcher.last().isRunning());
    EXPECT_EQ(time.timerCount(), 0u);
    time.advance(60s);
    EXPECT_EQ(log.lines().last(), u"🔴 Server process terminated with status: 0"_s);
}

} // namespace
} // namespace tarne
