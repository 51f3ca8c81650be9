#include "ServerFixture.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

class ServerStartTest : public ServerFixture {};

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

TEST_F(ServerStartTest, IsNeitherRunningNorFailedBeforeTheFirstStart) {
    EXPECT_FALSE(manager->isRunning());
    EXPECT_EQ(manager->serverError(), std::nullopt);
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(ServerStartTest, AStartLogsItsStepsInOrder) {
    manager->startServer();
    EXPECT_EQ(log.lines(), linesOfASuccessfulStart());
}

TEST_F(ServerStartTest, AStartSearchesSweepsSleepsTwoSecondsAndLooksForAPortInThisOrder) {
    ports.busy = {3000};
    manager->startServer();
    QStringList expected = linesOfASuccessfulStart().first(7);
    for (const int port : {3000, 3000, 3001, 3002, 3003, 3004, 3005, 3006, 3007, 3008, 3009, 3010})
        expected += u"/usr/bin/lsof -ti :%1"_s.arg(port);
    expected += {u"/usr/bin/pkill -f tarne-server"_s,
                 u"/usr/bin/pkill -f node"_s,
                 u"/usr/bin/pkill -f tarne-server"_s,
                 u"sleep 2000000 us"_s,
                 u"try 3000"_s,
                 u"try 3001"_s,
                 u"🔍 Using port: 3001 (Safari extension will auto-discover)"_s,
                 u"🔍 Will pass port 3001 as argument to server"_s,
                 u"🔍 Starting server with arguments: [\"3001\"]"_s,
                 u"launch /home/user/tarne-server"_s,
                 u"🟢 Server started successfully on port 3001"_s};
    EXPECT_EQ(journal, expected);
}

TEST_F(ServerStartTest, TheServerGetsItsPortAsArgumentAndInItsEnvironment) {
    manager->startServer();
    EXPECT_EQ(launcher.last().launch.executable, server);
    EXPECT_EQ(launcher.last().launch.arguments, QStringList{u"3000"_s});
    EXPECT_EQ(launcher.last().launch.environment,
              (std::map<QString, QString>{{u"PORT"_s, u"3000"_s}}));
}

TEST_F(ServerStartTest, AStoredKeyIsInTheServersEnvironmentAndNowhereInTheLog) {
    keychain.items[{u"com.tarne.app"_s, u"GeminiAPIKey"_s}] = "very-secret";
    manager->startServer();
    EXPECT_EQ(launcher.last().launch.environment.at(u"GEMINI_API_KEY"_s), u"very-secret"_s);
    EXPECT_FALSE(log.lines().join(u'\n').contains(u"very-secret"_s));
}

TEST_F(ServerStartTest, TheKeyIsReadLastBeforeTheLaunch) {
    QString lineBefore;
    keychain.beforeCopy = [&] { lineBefore = journal.last(); };
    manager->startServer();
    EXPECT_EQ(keychain.calls(), QStringList{u"copy"_s});
    EXPECT_EQ(lineBefore, u"🔍 Starting server with arguments: [\"3000\"]"_s);
}

TEST_F(ServerStartTest, AnEmptyStoredKeyIsTreatedLikeNone) {
    keychain.items[{u"com.tarne.app"_s, u"GeminiAPIKey"_s}] = "";
    manager->startServer();
    EXPECT_FALSE(launcher.last().launch.environment.contains(u"GEMINI_API_KEY"_s));
}

TEST_F(ServerStartTest, ABusyPortMovesArgumentAndEnvironmentToTheNext) {
    ports.busy = {3000};
    manager->startServer();
    EXPECT_EQ(launcher.last().launch.arguments, QStringList{u"3001"_s});
    EXPECT_EQ(launcher.last().launch.environment.at(u"PORT"_s), u"3001"_s);
    EXPECT_EQ(log.lines().last(), u"🟢 Server started successfully on port 3001"_s);
}

TEST_F(ServerStartTest, WithAllPortsBusyTheLaunchGoesAheadOnTheFirst) {
    for (int port = 3000; port <= 3100; ++port)
        ports.busy.insert(port);
    manager->startServer();
    EXPECT_EQ(ports.tried.size(), 101u);
    EXPECT_EQ(ports.tried.back(), 3100);
    EXPECT_EQ(launcher.last().launch.arguments, QStringList{u"3000"_s});
    EXPECT_EQ(log.lines(), linesOfASuccessfulStart());
}

TEST_F(ServerStartTest, TheLastPortOfTheRangeIsUsed) {
    for (int port = 3000; port < 3100; ++port)
        ports.busy.insert(port);
    manager->startServer();
    EXPECT_EQ(launcher.last().launch.arguments, QStringList{u"3100"_s});
}

TEST_F(ServerStartTest, EachStartBeginsItsPortSearchAnew) {
    ports.busy = {3000};
    start();
    ports.busy.clear();
    launcher.last().exit(0);
    time.runPending();
    manager->startServer();
    EXPECT_EQ(launcher.last().launch.arguments, QStringList{u"3000"_s});
}

TEST_F(ServerStartTest, EachSweepBeginsWithPort3000WhateverTheLastPortWas) {
    ports.busy = {3000};
    start();
    launcher.last().exit(0);
    time.runPending();
    manager->startServer();
    EXPECT_EQ(tools.calls.first(3),
              (QStringList{u"/usr/bin/lsof -ti :3000"_s, u"/usr/bin/lsof -ti :3000"_s,
                           u"/usr/bin/lsof -ti :3001"_s}));
}

TEST_F(ServerStartTest, RunningIsReportedThroughTheMainQueue) {
    manager->startServer();
    EXPECT_FALSE(manager->isRunning());
    time.runPending();
    EXPECT_TRUE(manager->isRunning());
}

TEST_F(ServerStartTest, ASuccessfulStartClearsAnEarlierError) {
    launcher.failure = u"Permission denied"_s;
    manager->startServer();
    launcher.failure.reset();
    manager->startServer();
    EXPECT_NE(manager->serverError(), std::nullopt);
    time.runPending();
    EXPECT_EQ(manager->serverError(), std::nullopt);
}

TEST_F(ServerStartTest, IsRunningChangesBeforeTheErrorIsCleared) {
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

TEST_F(ServerStartTest, ASecondStartWhileRunningDoesNothing) {
    start();
    manager->startServer();
    time.runPending();
    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_TRUE(tools.calls.isEmpty());
    EXPECT_EQ(launcher.children.size(), 1u);
}

TEST_F(ServerStartTest, WithoutAnExecutableTheErrorSaysSoAndNothingIsSwept) {
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

TEST_F(ServerStartTest, AFailedLaunchShowsTheSystemsReason) {
    launcher.failure = u"Permission denied"_s;
    manager->startServer();
    EXPECT_EQ(manager->serverError(), u"Failed to start server: Permission denied"_s);
    EXPECT_EQ(log.lines().last(), u"❌ Failed to start server: Permission denied"_s);
    time.advance(10s);
    EXPECT_FALSE(manager->isRunning());
    EXPECT_TRUE(health.addresses.isEmpty());
}

TEST_F(ServerStartTest, AFailedLaunchLeavesNothingToStop) {
    launcher.failure = u"Permission denied"_s;
    manager->startServer();
    log.takeLines();
    manager->stopServer();
    EXPECT_EQ(log.lines(), QStringList{u"🔴 No server process to stop"_s});
}

} // namespace
} // namespace tarne::test
