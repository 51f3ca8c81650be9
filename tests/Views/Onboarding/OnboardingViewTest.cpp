#include "OnboardingView.h"

#include "MemoryDefaults.h"
#include "RecordingWorkspace.h"
#include "ServerFixture.h"
#include "UserPreferences.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

class OnboardingViewTest : public ServerFixture {
protected:
    void goToSetup() { view.goForward(); }

    void finishWith(const QString &key) {
        goToSetup();
        view.setApiKey(key);
        view.goForward();
    }

    const test::MemoryKeychain::Address address{u"com.tarne.app"_s, u"GeminiAPIKey"_s};
    test::MemoryDefaults defaults;
    test::RecordingWorkspace workspace;
    OnboardingView view{*manager, defaults, workspace, QUrl()};
};

TEST_F(OnboardingViewTest, BeginsOnTheWelcomePageWithAnEmptyMaskedKey) {
    EXPECT_EQ(view.currentScreen(), 0);
    EXPECT_EQ(view.apiKey(), u""_s);
    EXPECT_FALSE(view.isAPIKeyVisible());
    EXPECT_FALSE(view.showingAPIKeyAlert());
    EXPECT_FALSE(view.isOnboardingComplete());
}

TEST_F(OnboardingViewTest, NextIsAlwaysPossibleOnTheWelcomePage) {
    EXPECT_EQ(view.forwardText(), u"Next"_s);
    EXPECT_TRUE(view.canGoForward());
}

TEST_F(OnboardingViewTest, NextLeadsToTheSetupPageAndBackAgain) {
    goToSetup();
    EXPECT_EQ(view.currentScreen(), 1);
    EXPECT_EQ(view.forwardText(), u"Start Focusing"_s);
    view.goBack();
    EXPECT_EQ(view.currentScreen(), 0);
}

TEST_F(OnboardingViewTest, ThereIsNothingBeforeTheWelcomePage) {
    view.goBack();
    EXPECT_EQ(view.currentScreen(), 0);
}

TEST_F(OnboardingViewTest, StartFocusingNeedsMoreThanBlanks) {
    goToSetup();
    EXPECT_FALSE(view.canGoForward());
    view.setApiKey(u" \n\t "_s);
    EXPECT_FALSE(view.canGoForward());
    view.goForward();
    EXPECT_FALSE(view.showingAPIKeyAlert());
    view.setApiKey(u"key"_s);
    EXPECT_TRUE(view.canGoForward());
}

TEST_F(OnboardingViewTest, KeyAndVisibilitySurviveAMoveBetweenThePages) {
    goToSetup();
    view.setApiKey(u"key"_s);
    view.toggleAPIKeyVisibility();
    view.goBack();
    view.goForward();
    EXPECT_EQ(view.apiKey(), u"key"_s);
    EXPECT_TRUE(view.isAPIKeyVisible());
}

TEST_F(OnboardingViewTest, TheStoredKeyHasNoBlanksAroundIt) {
    finishWith(u"  key \n"_s);
    EXPECT_EQ(keychain.items.at(address), "key");
}

TEST_F(OnboardingViewTest, SavingTheKeyRestartsTheRunningServerWithIt) {
    start();
    finishWith(u"key"_s);
    time.advance(2s);
    ASSERT_EQ(launcher.children.size(), 2u);
    EXPECT_EQ(launcher.last().launch.environment.at(u"GEMINI_API_KEY"_s), u"key"_s);
}

TEST_F(OnboardingViewTest, FinishingStoresThatOnboardingIsDoneAndKeepsTheOtherPreferences) {
    UserPreferences before;
    before.defaultDuration = 3000;
    before.lastGoal = u"Write"_s;
    before.save(defaults);
    finishWith(u"key"_s);
    before.hasCompletedOnboarding = true;
    EXPECT_EQ(UserPreferences::load(defaults), before);
}

TEST_F(OnboardingViewTest, TheKeyIsSavedBeforeItIsStoredThatOnboardingIsDone) {
    std::optional<bool> wasDone;
    keychain.beforeAdd = [&] { wasDone = UserPreferences::load(defaults).hasCompletedOnboarding; };
    finishWith(u"key"_s);
    EXPECT_EQ(wasDone, false);
    EXPECT_TRUE(UserPreferences::load(defaults).hasCompletedOnboarding);
}

TEST_F(OnboardingViewTest, TheClosingAlertComesAfterThePreferenceIsStored) {
    bool storedBefore = false;
    QObject::connect(&view, &OnboardingView::showingAPIKeyAlertChanged, [&] {
        storedBefore = UserPreferences::load(defaults).hasCompletedOnboarding;
    });
    finishWith(u"key"_s);
    EXPECT_TRUE(view.showingAPIKeyAlert());
    EXPECT_TRUE(storedBefore);
}

TEST_F(OnboardingViewTest, TheClosingAlertComesAlsoWhenTheKeyStoreFails) {
    keychain.failsToAdd = true;
    finishWith(u"key"_s);
    EXPECT_TRUE(view.showingAPIKeyAlert());
    EXPECT_TRUE(UserPreferences::load(defaults).hasCompletedOnboarding);
}

TEST_F(OnboardingViewTest, OnlyTheAlertsButtonLeavesOnboarding) {
    finishWith(u"key"_s);
    EXPECT_FALSE(view.isOnboardingComplete());
    view.startUsing();
    EXPECT_TRUE(view.isOnboardingComplete());
    EXPECT_FALSE(view.showingAPIKeyAlert());
}

TEST_F(OnboardingViewTest, GettingAKeyOpensTheKeyPage) {
    view.openKeyPage();
    ASSERT_EQ(workspace.opened.size(), 1u);
    EXPECT_EQ(workspace.opened.front(), QUrl(u"https://aistudio.google.com/app/apikey"_s));
}

} // namespace
} // namespace tarne::test
