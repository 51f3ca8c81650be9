#include "SettingsView.h"

#include "RecordingWorkspace.h"
#include "ServerFixture.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

class SettingsViewTest : public ServerFixture {
protected:
    void store(const QByteArray &key) { keychain.items[address] = key; }

    const test::MemoryKeychain::Address address{u"com.tarne.app"_s, u"GeminiAPIKey"_s};
    test::RecordingWorkspace workspace;
    SettingsView view{*manager, workspace};
};

TEST_F(SettingsViewTest, WithoutAStoredKeyTheFieldIsEmptyAndNothingCanBeSaved) {
    view.appear();
    EXPECT_EQ(view.apiKey(), u""_s);
    EXPECT_FALSE(view.canSave());
}

TEST_F(SettingsViewTest, AStoredKeyIsInTheFieldMasked) {
    store("secret");
    view.appear();
    EXPECT_EQ(view.apiKey(), u"secret"_s);
    EXPECT_FALSE(view.isAPIKeyVisible());
}

TEST_F(SettingsViewTest, AppearingAgainReplacesWhatWasTyped) {
    store("secret");
    view.appear();
    view.setApiKey(u"typed"_s);
    view.disappear();
    view.appear();
    EXPECT_EQ(view.apiKey(), u"secret"_s);
}

TEST_F(SettingsViewTest, AKeyOfBlanksCannotBeSaved) {
    view.setApiKey(u" \t\n "_s);
    EXPECT_FALSE(view.canSave());
}

TEST_F(SettingsViewTest, SavingStoresTheTrimmedKeyAndKeepsTheFieldsText) {
    view.setApiKey(u"  new key \n"_s);
    view.saveAPIKey();
    EXPECT_EQ(keychain.items.at(address), "new key");
    EXPECT_EQ(view.apiKey(), u"  new key \n"_s);
}

TEST_F(SettingsViewTest, SavingShowsTheAlertUntilItIsClosed) {
    view.setApiKey(u"new"_s);
    view.saveAPIKey();
    EXPECT_TRUE(view.showingAPIKeyAlert());
    view.closeAlert();
    EXPECT_FALSE(view.showingAPIKeyAlert());
}

TEST_F(SettingsViewTest, SavingShowsTheAlertAlsoWhenTheKeyStoreFails) {
    keychain.failsToAdd = true;
    view.setApiKey(u"new"_s);
    view.saveAPIKey();
    EXPECT_TRUE(view.showingAPIKeyAlert());
}

TEST_F(SettingsViewTest, SavingWhileTheServerIsStoppedStoresTheKeyAndStartsNothing) {
    view.setApiKey(u"new"_s);
    view.saveAPIKey();
    time.advance(10s);
    EXPECT_FALSE(view.isRunning());
    EXPECT_TRUE(keychain.items.contains(address));
    EXPECT_TRUE(launcher.calls.isEmpty());
}

TEST_F(SettingsViewTest, SavingRestartsARunningServer) {
    start();
    view.setApiKey(u"new"_s);
    view.saveAPIKey();
    time.advance(2s);
    EXPECT_EQ(launcher.children.size(), 2u);
}

TEST_F(SettingsViewTest, TheStatusFollowsTheServer) {
    EXPECT_EQ(view.statusText(), u"Server Stopped"_s);
    int changes = 0;
    QObject::connect(&view, &SettingsView::isRunningChanged, [&] { ++changes; });
    view.startServer();
    time.runPending();
    EXPECT_EQ(view.statusText(), u"Server Running"_s);
    EXPECT_EQ(changes, 1);
}

TEST_F(SettingsViewTest, ARestartShowsTheServerStoppedForASecond) {
    start();
    view.restartServer();
    time.runPending();
    EXPECT_EQ(view.statusText(), u"Server Stopped"_s);
    time.advance(2s);
    EXPECT_EQ(view.statusText(), u"Server Running"_s);
}

TEST_F(SettingsViewTest, TheServersErrorIsShownAsItStands) {
    EXPECT_EQ(view.serverError(), u""_s);
    start();
    launcher.last().exit(7);
    time.runPending();
    EXPECT_EQ(view.serverError(), u"Server exited with code 7"_s);
}

TEST_F(SettingsViewTest, TheEyeTogglesTheKeysVisibility) {
    view.toggleAPIKeyVisibility();
    EXPECT_TRUE(view.isAPIKeyVisible());
    view.toggleAPIKeyVisibility();
    EXPECT_FALSE(view.isAPIKeyVisible());
}

TEST_F(SettingsViewTest, GettingAKeyOpensTheKeyPage) {
    view.openKeyPage();
    ASSERT_EQ(workspace.opened.size(), 1u);
    EXPECT_EQ(workspace.opened.front(), QUrl(u"https://aistudio.google.com/app/apikey"_s));
}

} // namespace
} // namespace tarne::test
