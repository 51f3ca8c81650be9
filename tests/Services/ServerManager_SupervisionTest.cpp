#include "ServerFixture.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

class ServerSupervisionTest : public ServerFixture {
protected:
    void print(const QByteArray &chunk) {
        launcher.last().launch.standardOutput(chunk);
        time.runPending();
    }

    void check(const HealthProbe::Reply &reply) {
        manager->performHealthCheck();
        health.answer(reply);
        time.runPending();
    }

    /// The address that the next health check asks.
    QString nextAddress() {
        manager->performHealthCheck();
        return health.addresses.last();
    }
};

// Health.

TEST_F(ServerSupervisionTest, TheFirstTimedCheckComesThirtySecondsAfterConstruction) {
    time.advance(10s);
    start();
    time.advance(2s);
    health.addresses.clear();
    time.advance(15s);
    EXPECT_TRUE(health.addresses.isEmpty());
    time.advance(1s);
    EXPECT_EQ(health.addresses.size(), 1);
}

TEST_F(ServerSupervisionTest, ChecksRecurEveryThirtySeconds) {
    start();
    time.advance(300s);
    EXPECT_EQ(health.addresses.size(), 1 + 10);
}

TEST_F(ServerSupervisionTest, ATickWhileStoppedDoesNothingAtAll) {
    time.advance(30s);
    EXPECT_TRUE(health.addresses.isEmpty());
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(ServerSupervisionTest, TwoSecondsAfterAStartTheServersHealthIsAsked) {
    start();
    time.advance(1999ms);
    EXPECT_TRUE(health.addresses.isEmpty());
    time.advance(2ms);
    EXPECT_EQ(health.addresses, QStringList{u"http://localhost:3000/health"_s});
}

TEST_F(ServerSupervisionTest, AStatusOf200IsHealth) {
    start();
    check(200);
    EXPECT_EQ(manager->serverError(), std::nullopt);
    EXPECT_EQ(log.lines(), QStringList{u"✅ Server health check passed"_s});
}

TEST_F(ServerSupervisionTest, AnyOtherStatusIsAnUnexpectedResponse) {
    start();
    for (const int status : {503, 404, 204, 302}) {
        check(status);
        EXPECT_EQ(manager->serverError(), u"Server not responding properly"_s);
        EXPECT_EQ(log.takeLines(),
                  QStringList{u"⚠️ Server health check: unexpected response"_s});
        EXPECT_TRUE(manager->isRunning());
    }
}

TEST_F(ServerSupervisionTest, AFailedProbeIsShownAndChangesNothingElse) {
    start();
    check(HealthProbe::Failure{u"Connection refused"_s});
    EXPECT_EQ(manager->serverError(), u"Health check failed: Connection refused"_s);
    EXPECT_EQ(log.lines(), QStringList{u"⚠️ Server health check failed: Connection refused"_s});
    EXPECT_TRUE(manager->isRunning());
    EXPECT_EQ(launcher.children.size(), 1u);
}

TEST_F(ServerSupervisionTest, APassingCheckClearsWhateverStoodThere) {
    start();
    check(503);
    check(200);
    EXPECT_EQ(manager->serverError(), std::nullopt);
}

TEST_F(ServerSupervisionTest, AProbesAnswerTouchesStateOnTheMainQueueOnly) {
    start();
    manager->performHealthCheck();
    health.answer(503);
    EXPECT_EQ(manager->serverError(), std::nullopt);
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(ServerSupervisionTest, AfterAnExitTheChecksStop) {
    start();
    launcher.last().exit(0);
    time.advance(120s);
    EXPECT_TRUE(health.addresses.isEmpty());
}

TEST_F(ServerSupervisionTest, AnAnswerAfterTheManagersEndIsOnlyLogged) {
    start();
    manager->performHealthCheck();
    manager.reset();
    time.runPending();
    log.takeLines();
    health.answer(200);
    time.runPending();
    EXPECT_EQ(log.lines(), QStringList{u"✅ Server health check passed"_s});
}

// Output.

TEST_F(ServerSupervisionTest, OutputIsLoggedByChunkWithoutTheWhiteSpaceAroundIt) {
    start();
    print("  first\nsecond \n\n");
    EXPECT_EQ(log.lines(), QStringList{u"🖥️ Server: first\nsecond"_s});
}

TEST_F(ServerSupervisionTest, AChunkOfWhiteSpaceIsLoggedEmpty) {
    start();
    print("\n");
    EXPECT_EQ(log.lines(), QStringList{u"🖥️ Server: "_s});
}

TEST_F(ServerSupervisionTest, AnEmptyChunkAndOneThatIsNoUtf8AreDropped) {
    start();
    print("");
    print("caf\xe9");
    print("\xf0\x9f\x94");
    launcher.last().launch.standardError("\xff");
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(ServerSupervisionTest, ErrorOutputIsLoggedAndSetsNoError) {
    start();
    launcher.last().launch.standardError(
        " warning: TARNE Classification Server running on port 3005\n");
    time.runPending();
    EXPECT_EQ(
        log.lines(),
        QStringList{
            u"⚠️ Server Error: warning: TARNE Classification Server running on port 3005"_s});
    EXPECT_EQ(manager->serverError(), std::nullopt);
    EXPECT_EQ(nextAddress(), u"http://localhost:3000/health"_s);
}

TEST_F(ServerSupervisionTest, AnEmptyChunkOfErrorOutputIsDropped) {
    start();
    launcher.last().launch.standardError("");
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST_F(ServerSupervisionTest, AChunkOfWhiteSpaceInErrorOutputIsLoggedEmpty) {
    start();
    launcher.last().launch.standardError(" \n");
    EXPECT_EQ(log.lines(), QStringList{u"⚠️ Server Error: "_s});
}

TEST_F(ServerSupervisionTest, AnAnnouncedPortIsTheOneThatHealthChecksAsk) {
    start();
    print("TARNE Classification Server running on port 3005\n");
    EXPECT_EQ(log.lines(),
              (QStringList{u"🖥️ Server: TARNE Classification Server running on port 3005"_s,
                           u"🔍 Server confirmed running on port: 3005"_s}));
    EXPECT_EQ(nextAddress(), u"http://localhost:3005/health"_s);
}

TEST_F(ServerSupervisionTest, AnAnnouncedPortWaitsForTheMainQueue) {
    start();
    launcher.last().launch.standardOutput("TARNE Classification Server running on port 3005");
    EXPECT_EQ(log.lines().size(), 1);
    EXPECT_EQ(nextAddress(), u"http://localhost:3000/health"_s);
}

struct AnnouncementCase {
    const char *name;
    QByteArray chunk;
    QString port; ///< As in the next health check's address.
};

class AnnouncedPort : public ServerSupervisionTest,
                      public testing::WithParamInterface<AnnouncementCase> {};

TEST_P(AnnouncedPort, IsTheNumberBehindTheFirstWordPort) {
    start();
    print(GetParam().chunk);
    EXPECT_EQ(nextAddress(), u"http://localhost:%1/health"_s.arg(GetParam().port));
}

const QByteArray marker = "TARNE Classification Server running on port";

INSTANTIATE_TEST_SUITE_P(
    Chunks, AnnouncedPort,
    testing::Values(
        AnnouncementCase{"LastInTheChunk", marker + " 3005", u"3005"_s},
        AnnouncementCase{"BeforeABlank", marker + " 3005 (pid 7)", u"3005"_s},
        AnnouncementCase{"BehindOtherText", "ready: " + marker + " 3005", u"3005"_s},
        AnnouncementCase{"TextBehindALineEnd", marker + " 3005\nready", u"3000"_s},
        AnnouncementCase{"TabBehindTheNumber", marker + " 3005\tready", u"3000"_s},
        AnnouncementCase{"TwoBlanks", marker + "  3005", u"3000"_s},
        AnnouncementCase{"NoNumber", marker, u"3000"_s},
        AnnouncementCase{"AWord", marker + " abc", u"3000"_s},
        AnnouncementCase{"Colon", marker + ": 3005", u"3000"_s},
        AnnouncementCase{"AnEarlierPort", "port 7 is taken; " + marker + " 3005", u"7"_s},
        AnnouncementCase{"FortyDigits", marker + " " + QByteArray(40, '3'), u"3000"_s},
        AnnouncementCase{"OutOfRange", marker + " 70000", u"70000"_s},
        AnnouncementCase{"Negative", marker + " -1", u"-1"_s},
        AnnouncementCase{"NoMarker", "running on port 3005", u"3000"_s},
        AnnouncementCase{"OtherCase", "TARNE CLASSIFICATION SERVER running on port 3005",
                         u"3000"_s}),
    [](const auto &row) { return row.param.name; });

TEST_F(ServerSupervisionTest, AMarkerSplitOverTwoChunksIsNoAnnouncement) {
    start();
    print("TARNE Classification Server run");
    print("ning on port 3005");
    EXPECT_EQ(nextAddress(), u"http://localhost:3000/health"_s);
}

} // namespace
} // namespace tarne::test
