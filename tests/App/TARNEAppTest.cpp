#include "AppFixture.h"

#include <QGuiApplication>
#include <QPalette>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using test::TARNEAppTest;

TEST_F(TARNEAppTest, HasOneControllerUntilOnboardingEnds) {
    EXPECT_FALSE(app().contentView());
    EXPECT_TRUE(app().onboardingView());
    EXPECT_EQ(controllers, 1);
}

TEST_F(TARNEAppTest, ShowsOnboardingAgainWhenItsFlagIsGoneAtTheNextAppearance) {
    completeOnboardingBefore();
    app().windowShown();
    app().windowClosed();
    defaults.removeObjectForKey(keys::userPreferences);
    app().windowShown();
    EXPECT_FALSE(app().contentView());
    EXPECT_TRUE(app().onboardingView());
}

TEST_F(TARNEAppTest, HasTwoControllersOnceTheTabsAreShown) {
    completeOnboardingBefore();
    ASSERT_TRUE(app().contentView());
    EXPECT_FALSE(app().onboardingView());
    EXPECT_EQ(controllers, 2);
    EXPECT_NE(&app().mainAppView()->sessionViewModel(), &app().contentView()->sessionViewModel());
}

TEST_F(TARNEAppTest, CompletingOnboardingBringsUpTheTabsAtTimerAndIsSaved) {
    app().windowShown();
    QSignalSpy changed(&app(), &TARNEApp::gateChanged);
    app().mainAppView()->setOnboardingComplete(true);
    ASSERT_TRUE(app().contentView());
    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(app().contentView()->selectedTab(), 0);
    EXPECT_TRUE(app().contentView()->timerView());
    EXPECT_TRUE(UserPreferences::load(defaults).hasCompletedOnboarding);
}

TEST_F(TARNEAppTest, TheClosingAlertsButtonLeadsFromOnboardingToTheTabs) {
    app().windowShown();
    OnboardingView &onboarding = *app().onboardingView();
    onboarding.goForward();
    onboarding.setApiKey(u"key"_s);
    onboarding.goForward();
    QCoreApplication::processEvents();
    EXPECT_FALSE(app().contentView()) << "only the alert's button leaves onboarding";
    onboarding.startUsing();
    QCoreApplication::processEvents();
    ASSERT_TRUE(app().contentView());
    EXPECT_FALSE(app().onboardingView());
    EXPECT_EQ(app().contentView()->selectedTab(), 0);
    EXPECT_EQ(controllers, 2);
}

TEST_F(TARNEAppTest, CompletingOnboardingSavesTheRootViewsOwnCopyWhole) {
    app();
    UserPreferences others;
    others.lastGoal = u"written meanwhile"_s;
    others.save(defaults);
    app().mainAppView()->setOnboardingComplete(true);
    EXPECT_EQ(UserPreferences::load(defaults).lastGoal, QString()) << "the last save wins entirely";
}

TEST_F(TARNEAppTest, AChangeOfOnboardingToFalseIsNotSaved) {
    completeOnboardingBefore();
    app();
    defaults.takeWrites();
    app().mainAppView()->setOnboardingComplete(false);
    EXPECT_TRUE(defaults.takeWrites().isEmpty());
}

TEST_F(TARNEAppTest, ReadsTheOnboardingFlagAgainOnAppearing) {
    app();
    completeOnboardingBefore();
    app().windowShown();
    EXPECT_TRUE(app().mainAppView()->isOnboardingComplete());
    EXPECT_TRUE(app().contentView());
}

TEST_F(TARNEAppTest, AFlagThatAppearingFindsSetIsSavedWithTheRootViewsOwnCopy) {
    app();
    UserPreferences others;
    others.hasCompletedOnboarding = true;
    others.lastGoal = u"written meanwhile"_s;
    others.save(defaults);
    app().windowShown();
    EXPECT_TRUE(UserPreferences::load(defaults).hasCompletedOnboarding);
    EXPECT_EQ(UserPreferences::load(defaults).lastGoal, QString());
}

TEST_F(TARNEAppTest, TellsTheDelegateOfTheTabsControllerOnAppearing) {
    completeOnboardingBefore();
    app();
    EXPECT_FALSE(delegate.sessionViewModel);
    app().windowShown();
    EXPECT_EQ(delegate.sessionViewModel, &app().contentView()->sessionViewModel());
}

TEST_F(TARNEAppTest, IsLightOnADarkDesktop) {
    QPalette dark;
    dark.setColor(QPalette::Window, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    QGuiApplication::setPalette(dark);
    completeOnboardingBefore();
    app().windowShown();
    EXPECT_EQ(QGuiApplication::palette().color(QPalette::Window), QColor(Qt::white));
    EXPECT_EQ(QGuiApplication::palette().color(QPalette::Text), QColor(0x1C, 0x1C, 0x1E));
}

TEST_F(TARNEAppTest, HasFourTabsWithTheirSymbolsAndLabels) {
    QStringList tabs;
    for (const TabItem &tab : ContentView::tabs())
        tabs += tab.icon + u": "_s + tab.label;
    EXPECT_EQ(tabs, (QStringList{u"timer: Timer"_s, u"chart.bar: Insights"_s,
                                 u"book.closed: History"_s, u"gear: Settings"_s}));
}

TEST_F(TARNEAppTest, MakesTheTimerScreenWhenItIsFirstShown) {
    completeOnboardingBefore();
    app();
    EXPECT_EQ(timerViews, 0);
    app().windowShown();
    EXPECT_EQ(timerViews, 1);
    app().contentView()->setSelectedTab(1);
    app().contentView()->setSelectedTab(0);
    EXPECT_EQ(timerViews, 1);
}

TEST_F(TARNEAppTest, FillsAnEmptyHistoryWhenATabThatLooksBackIsFirstShown) {
    completeOnboardingBefore();
    app().windowShown();
    ContentView &content = *app().contentView();
    EXPECT_EQ(content.insightsView(), nullptr);
    EXPECT_EQ(content.historyView(), nullptr);
    EXPECT_TRUE(content.sessionViewModel().loadSessionHistory().empty());
    content.setSelectedTab(1);
    EXPECT_EQ(content.sessionViewModel().loadSessionHistory().size(), 6U);
    EXPECT_EQ(content.insightsView()->totalSessionsThisYear(), 6);
    content.setSelectedTab(2);
    EXPECT_EQ(content.historyView()->historyEntries().size(), 6U);
}

TEST_F(TARNEAppTest, AHistoryTabThatIsHiddenFollowsNoSession) {
    completeOnboardingBefore();
    app().windowShown();
    ContentView &content = *app().contentView();
    content.setSelectedTab(2);
    const HistoryView &history = *content.historyView();
    const std::size_t samples = history.historyEntries().size();
    content.setSelectedTab(0);
    content.sessionViewModel().saveSessionToHistory({.goals = {{.text = u"Review"_s}}});
    EXPECT_EQ(history.historyEntries().size(), samples);
    content.setSelectedTab(2);
    EXPECT_EQ(history.historyEntries().size(), samples + 1);
}

TEST_F(TARNEAppTest, TheSettingsReadTheKeyEachTimeTheirTabIsShown) {
    completeOnboardingBefore();
    app().windowShown();
    EXPECT_FALSE(app().contentView()->settingsView());
    app().contentView()->setSelectedTab(3);
    ASSERT_TRUE(app().contentView()->settingsView());
    EXPECT_EQ(app().contentView()->settingsView()->apiKey(), u""_s);
    app().contentView()->setSelectedTab(0);
    serverManager.updateAPIKey(u"key"_s);
    app().contentView()->setSelectedTab(3);
    EXPECT_EQ(app().contentView()->settingsView()->apiKey(), u"key"_s);
    EXPECT_EQ(settingsViews, 1);
}

TEST_F(TARNEAppTest, ARunOutWhileAnotherTabIsShownOpensNoReflectionWhenTheTabComesBack) {
    completeOnboardingBefore();
    app().windowShown();
    ContentView &content = *app().contentView();
    content.sessionViewModel().startSession(
        content.sessionViewModel().createSession(u"Review"_s, 300));
    content.setSelectedTab(2);
    pass(300);
    EXPECT_TRUE(content.sessionViewModel().isTimerComplete());
    content.setSelectedTab(0);
    pass(5);
    EXPECT_FALSE(content.sessionViewModel().isTimerComplete());
    EXPECT_FALSE(content.timerView()->showSessionReflection());
}

TEST_F(TARNEAppTest, AClosedWindowShowsNoScreenAndTheCountdownGoesOn) {
    completeOnboardingBefore();
    app().windowShown();
    ContentView &content = *app().contentView();
    content.sessionViewModel().startSession(
        content.sessionViewModel().createSession(u"Review"_s, 300));
    app().windowClosed();
    pass(100);
    EXPECT_DOUBLE_EQ(content.sessionViewModel().timeRemaining(), 200.0);
    EXPECT_EQ(defaults.dateForKey(keys::timerStartTime), time.now() - 100);
    EXPECT_DOUBLE_EQ(content.timerView()->timeRemaining(), 300.0) << "nobody looks";
    app().windowShown();
    EXPECT_DOUBLE_EQ(content.timerView()->timeRemaining(), 200.0);
}

TEST_F(TARNEAppTest, NewSessionDoesNothing) {
    completeOnboardingBefore();
    app().windowShown();
    defaults.takeWrites();
    const QStringList lines = log.lines();
    app().newSession();
    EXPECT_TRUE(defaults.takeWrites().isEmpty());
    EXPECT_EQ(log.lines(), lines);
    EXPECT_FALSE(app().contentView()->sessionViewModel().currentSession());
}

TEST_F(TARNEAppTest, QuittingAsksNobodyAndTouchesNoSession) {
    completeOnboardingBefore();
    app().windowShown();
    SessionViewModel &controller = app().contentView()->sessionViewModel();
    controller.startSession(controller.createSession(u"Review"_s, 300));
    QSignalSpy quit(&app(), &TARNEApp::quitRequested);
    app().quit();
    EXPECT_EQ(quit.size(), 1);
    EXPECT_TRUE(controller.currentSession());
    EXPECT_TRUE(defaults.dateForKey(keys::timerStartTime));
}

} // namespace
} // namespace tarne::test
