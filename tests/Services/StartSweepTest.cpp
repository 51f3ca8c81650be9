#include "ServerFixture.h"

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class StartSweepTest : public ServerFixture {};

TEST_F(StartSweepTest, EveryProcessOnAPortIsTerminatedGivenHalfASecondAndKilled) {
    tools.results[u":3002"_s] = {0, "41\n 42 \n"};
    manager->startServer();
    const auto first = journal.indexOf(u"/usr/bin/lsof -ti :3002"_s);
    EXPECT_EQ(
        journal.mid(first + 1, 9),
        (QStringList{u"🔪 Killing existing process 41 on port 3002"_s, u"signal 15 to 41"_s,
                     u"sleep 500000 us"_s, u"signal 9 to 41"_s,
                     u"🔪 Killing existing process 42 on port 3002"_s, u"signal 15 to 42"_s,
                     u"sleep 500000 us"_s, u"signal 9 to 42"_s, u"/usr/bin/lsof -ti :3003"_s}));
}

TEST_F(StartSweepTest, LinesThatAreNoProcessNumberAreSkipped) {
    tools.results[u":3001"_s] = {0, "lsof: WARNING\n\n99999999999\n12x\n43"};
    manager->startServer();
    EXPECT_EQ(tools.calls.filter(u"signal"_s),
              (QStringList{u"signal 15 to 43"_s, u"signal 9 to 43"_s}));
}

TEST_F(StartSweepTest, OutputThatIsNoUtf8IsSkipped) {
    tools.results[u":3001"_s] = {0, "43\n\xff"};
    manager->startServer();
    EXPECT_TRUE(tools.calls.filter(u"signal"_s).isEmpty());
}

TEST_F(StartSweepTest, WhatLsofNamesCountsWhateverItEndsWith) {
    tools.results[u":3001"_s] = {1, "43\n"};
    manager->startServer();
    EXPECT_EQ(tools.calls.filter(u"signal"_s),
              (QStringList{u"signal 15 to 43"_s, u"signal 9 to 43"_s}));
}

TEST_F(StartSweepTest, AToolThatFoundNothingIsSilent) {
    manager->startServer();
    EXPECT_TRUE(log.lines().filter(u"No existing process"_s).isEmpty());
    EXPECT_TRUE(log.lines().filter(u"🔪"_s).isEmpty());
}

TEST_F(StartSweepTest, WithoutLsofEachEntryOfTheGivenPortIsReportedAndTheStartGoesOn) {
    tools.unlaunchable = {u"/usr/bin/lsof"_s};
    manager->startServer();
    EXPECT_EQ(log.lines().filter(u"No existing process"_s),
              (QStringList{u"🔍 No existing process found on port 3000"_s,
                           u"🔍 No existing process found on port 3000"_s}));
    EXPECT_EQ(launcher.children.size(), 1u);
}

TEST_F(StartSweepTest, EachMatchByNameIsLoggedRightAfterItsSearch) {
    tools.results[u"tarne-server"_s] = {0, {}};
    tools.results[u"node"_s] = {0, {}};
    manager->startServer();
    const auto first = journal.indexOf(u"/usr/bin/pkill -f tarne-server"_s);
    EXPECT_EQ(
        journal.mid(first, 7),
        (QStringList{u"/usr/bin/pkill -f tarne-server"_s,
                     u"🔪 Killed processes matching: tarne-server"_s, u"/usr/bin/pkill -f node"_s,
                     u"🔪 Killed processes matching: node"_s, u"/usr/bin/pkill -f tarne-server"_s,
                     u"🔪 Killed processes matching: tarne-server"_s, u"sleep 2000000 us"_s}));
}

TEST_F(StartSweepTest, ASearchByNameThatFailsIsNoMatch) {
    tools.results[u"node"_s] = {2, {}};
    manager->startServer();
    EXPECT_TRUE(log.lines().filter(u"🔪"_s).isEmpty());
}

TEST_F(StartSweepTest, WithoutPkillTheStartGoesOnInSilence) {
    tools.unlaunchable = {u"/usr/bin/pkill"_s};
    manager->startServer();
    EXPECT_TRUE(log.lines().filter(u"🔪"_s).isEmpty());
    EXPECT_EQ(launcher.children.size(), 1u);
}

} // namespace
} // namespace tarne::test
