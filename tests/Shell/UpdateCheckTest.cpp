#include "UpdateCheck.h"
#include "Workspace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Kind = UpdateCheckResult::Kind;

class HeldUpdater final : public UpdaterController {
public:
    void checkForUpdates(Done done) override { requests.push_back(std::move(done)); }
    std::vector<Done> requests;
};

class RecordingWorkspace final : public Workspace {
public:
    void open(const QUrl &url) override { opened.push_back(url); }
    std::vector<QUrl> opened;
};

class UpdateCheckTest : public testing::Test {
protected:
    void answer(const UpdateCheckResult &result) {
        check.checkForUpdates();
        updater.requests.back()(result);
    }

    HeldUpdater updater;
    RecordingWorkspace workspace;
    UpdateCheck check{updater, workspace};
};

TEST_F(UpdateCheckTest, PresentsNothingUntilTheAnswerComes) {
    check.checkForUpdates();
    EXPECT_FALSE(check.isPresented());
    updater.requests[0]({.kind = Kind::UpToDate, .version = {}, .downloadPage = {}, .failure = {}});
    EXPECT_TRUE(check.isPresented());
}

TEST_F(UpdateCheckTest, AsksOnceWhileARequestIsUnderWay) {
    check.checkForUpdates();
    check.checkForUpdates();
    EXPECT_EQ(updater.requests.size(), 1u);
    updater.requests[0]({});
    check.checkForUpdates();
    EXPECT_EQ(updater.requests.size(), 2u);
}

TEST_F(UpdateCheckTest, PresentsWhatTheUpdaterFoundByItself) {
    check.present({.kind = Kind::NewerVersion,
                   .version = u"9.1"_s,
                   .downloadPage = QUrl(u"https://example.org/get"_s),
                   .failure = {}});
    EXPECT_TRUE(check.isPresented());
    EXPECT_EQ(check.message(), u"TARNE 9.1 is ready to download."_s);
    check.download();
    EXPECT_THAT(workspace.opened, ElementsAre(QUrl(u"https://example.org/get"_s)));
}

TEST_F(UpdateCheckTest, SaysSoWhenThereIsNoFeed) {
    answer({.kind = Kind::NoFeed, .version = {}, .downloadPage = {}, .failure = {}});
    EXPECT_EQ(check.title(), u"Updates Are Not Set Up"_s);
    EXPECT_FALSE(check.offersDownload());
}

TEST_F(UpdateCheckTest, SaysSoWhenThereIsNothingNewer) {
    answer({.kind = Kind::UpToDate, .version = {}, .downloadPage = {}, .failure = {}});
    EXPECT_EQ(check.title(), u"You're Up to Date"_s);
    EXPECT_EQ(check.message(), u"There is no version newer than yours."_s);
    EXPECT_FALSE(check.offersDownload());
}

TEST_F(UpdateCheckTest, NamesANewerVersionAndOpensItsPage) {
    answer({.kind = Kind::NewerVersion,
            .version = u"2.0"_s,
            .downloadPage = QUrl(u"https://updates.example/tarne"_s),
            .failure = {}});
    EXPECT_EQ(check.title(), u"A New Version Is Available"_s);
    EXPECT_EQ(check.message(), u"TARNE 2.0 is ready to download."_s);
    EXPECT_TRUE(check.offersDownload());
    check.download();
    EXPECT_THAT(workspace.opened, ElementsAre(QUrl(u"https://updates.example/tarne"_s)));
    EXPECT_FALSE(check.isPresented());
}

TEST_F(UpdateCheckTest, TellsAFailureAndOpensNothing) {
    answer({.kind = Kind::Failure,
            .version = {},
            .downloadPage = {},
            .failure = u"The server did not answer."_s});
    EXPECT_EQ(check.title(), u"Update Check Failed"_s);
    EXPECT_EQ(check.message(), u"The server did not answer."_s);
    check.download();
    EXPECT_THAT(workspace.opened, IsEmpty());
}

TEST_F(UpdateCheckTest, DropsAnAnswerThatComesAfterItsEnd) {
    auto early = std::make_unique<UpdateCheck>(updater, workspace);
    early->checkForUpdates();
    early.reset();
    updater.requests[0]({});
}

} // namespace
} // namespace tarne::test
