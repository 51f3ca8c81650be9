#include "ServerExecutable.h"

#include "RecordingLog.h"
#include "ServerPlatformFakes.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class ServerExecutableTest : public testing::Test {
protected:
    std::optional<QString> find() { return findServerExecutable(bundle, log); }

    test::FakeBundle bundle;
    test::RecordingLog log;
};

TEST_F(ServerExecutableTest, AResourceOfTheBundleIsTheResultAndNothingElseIsLookedAt) {
    bundle.files = {u"/resources/tarne-server"_s, u"/home/user/tarne-server"_s};
    EXPECT_EQ(find(), u"/resources/tarne-server"_s);
    EXPECT_EQ(log.lines(), QStringList{u"🟢 Using bundled server at: /resources/tarne-server"_s});
}

TEST_F(ServerExecutableTest, TheFirstFolderLookedAtIsTheOneThatHoldsTheBundle) {
    bundle.files = {u"/opt/tarne/tarne-server"_s, u"/opt/tarne-server"_s};
    EXPECT_EQ(find(), u"/opt/tarne/tarne-server"_s);
    EXPECT_EQ(log.lines(),
              (QStringList{u"🔍 Starting search from: /opt/tarne/bin"_s,
                           u"🔍 Checking [0]: /opt/tarne/tarne-server"_s,
                           u"🟡 Using development server at: /opt/tarne/tarne-server"_s,
                           u"🔍 Also checking working directory: /home/user/tarne-server"_s}));
}

TEST_F(ServerExecutableTest, TheWorkingDirectoryWinsOverAFolderAbove) {
    bundle.files = {u"/opt/tarne-server"_s, u"/home/user/tarne-server"_s};
    EXPECT_EQ(find(), u"/home/user/tarne-server"_s);
    EXPECT_EQ(
        log.lines(),
        (QStringList{u"🔍 Starting search from: /opt/tarne/bin"_s,
                     u"🔍 Checking [0]: /opt/tarne/tarne-server"_s,
                     u"🔍 Checking [1]: /opt/tarne-server"_s,
                     u"🟡 Using development server at: /opt/tarne-server"_s,
                     u"🔍 Also checking working directory: /home/user/tarne-server"_s,
                     u"🟡 Using server from working directory: /home/user/tarne-server"_s}));
}

TEST_F(ServerExecutableTest, WithoutAServerTheWalkEndsAtTheRoot) {
    EXPECT_EQ(find(), std::nullopt);
    EXPECT_EQ(
        log.lines(),
        (QStringList{u"🔍 Starting search from: /opt/tarne/bin"_s,
                     u"🔍 Checking [0]: /opt/tarne/tarne-server"_s,
                     u"🔍 Checking [1]: /opt/tarne-server"_s, u"🔍 Checking [2]: //tarne-server"_s,
                     u"🔍 Reached root or no change, stopping search"_s,
                     u"🔍 Also checking working directory: /home/user/tarne-server"_s}));
}

TEST_F(ServerExecutableTest, ABundleInTheRootLooksThereOnceAndThenInTheWorkingDirectory) {
    bundle.bundlePath = u"/tarne"_s;
    EXPECT_EQ(find(), std::nullopt);
    EXPECT_EQ(log.lines(),
              (QStringList{u"🔍 Starting search from: /tarne"_s, u"🔍 Checking [0]: //tarne-server"_s,
                           u"🔍 Reached root or no change, stopping search"_s,
                           u"🔍 Also checking working directory: /home/user/tarne-server"_s}));
}

TEST_F(ServerExecutableTest, ABundleThatIsTheRootStopsWithoutChange) {
    bundle.bundlePath = u"/"_s;
    find();
    EXPECT_EQ(log.lines().at(1), u"🔍 Checking [0]: //tarne-server"_s);
    EXPECT_EQ(log.lines().at(2), u"🔍 Reached root or no change, stopping search"_s);
}

TEST_F(ServerExecutableTest, TriesTenFoldersAtMost) {
    bundle.bundlePath = u"/1/2/3/4/5/6/7/8/9/10/11/12"_s;
    bundle.files = {u"/1/tarne-server"_s};
    EXPECT_EQ(find(), std::nullopt);
    EXPECT_EQ(log.lines().size(), 12);
    EXPECT_EQ(log.lines().at(10), u"🔍 Checking [9]: /1/2/tarne-server"_s);
    EXPECT_EQ(log.lines().at(11), u"🔍 Also checking working directory: /home/user/tarne-server"_s);
}

TEST_F(ServerExecutableTest, TheTenthFolderCounts) {
    bundle.bundlePath = u"/1/2/3/4/5/6/7/8/9/10/11"_s;
    bundle.files = {u"/1/tarne-server"_s};
    EXPECT_EQ(find(), u"/1/tarne-server"_s);
}

} // namespace
} // namespace tarne::test
