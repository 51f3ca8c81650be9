#include "AnimationClock.h"
#include "ItemLook.h"
#include "LayoutProbe.h"
#include "ShellFixture.h"
#include "ShownOrb.h"
#include "TARNEStyle.h"

#include <QSignalSpy>
#include <QtQml/QQmlExtensionPlugin>

#include <map>

Q_IMPORT_QML_PLUGIN(TARNEPlugin)
Q_IMPORT_QML_PLUGIN(TARNE_StylingPlugin)
Q_IMPORT_QML_PLUGIN(TARNE_ViewsPlugin)

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using testing::IsSupersetOf;

class ShellScreen : public test::ShellTest {
protected:
    /// What an assistive tool is told about a tab.
    bool isSelected(const QString &tab) { return ui().accessible(tab)->state().selected; }
    QString keysOf(const QString &entry) {
        return ui().find(entry, QAccessible::MenuItem)->property("keys").toString();
    }

    /// A session a day, whose cards are from one line to two windows high.
    void storeUnevenHistory() {
        ui();
        std::vector<SessionHistoryEntry> entries;
        for (int day = 0; day < 60; ++day) {
            entries.push_back(
                {.sessionDate = time.now() - day * 86400.0,
                 .goals = {{.text = u"goal %1"_s.arg(day)}},
                 .duration = 1500.0,
                 .suggestions = day % 3 == 0 ? u"advice %1"_s.arg(day) : QString(),
                 .reflection = u"a line\n"_s.repeated(day % 7 == 3 ? 80 : day * 5 % 11)});
        }
        content().sessionViewModel().saveSessionHistory(entries);
    }
    void expectNoOtherLookBehindAnAlert() {
        ui().settle();
        const std::vector<std::string> before = shownBelow(*ui().root());
        updateCheck.present({});
        ui().settle();
        ASSERT_TRUE(ui().has(u"Updates Are Not Set Up"_s));
        expectEqual(shownBelow(*ui().root()), before);
        updateCheck.dismiss();
        ui().settle();
    }
    void showHistory() {
        ASSERT_TRUE(ui().click(u"History"_s, QAccessible::PageTab));
        ASSERT_TRUE(ui().waitUntil([&] { return isAtRest(2) && !ui().has(u"Session Setup"_s); }));
    }
    void showTimer() {
        ASSERT_TRUE(ui().click(u"Timer"_s, QAccessible::PageTab));
        ASSERT_TRUE(ui().waitUntil([&] { return isAtRest(0) && !ui().has(u"Session History"_s); }));
    }
    void readOn(int pages) {
        ui().find(u"Session History"_s, QAccessible::List)->forceActiveFocus();
        for (int page = 0; page < pages; ++page)
            ui().key(Qt::Key_PageDown);
        for (int line = 0; line < 3; ++line)
            ui().key(Qt::Key_Down);
        (void)ui().picture();
    }
    /// The goals of the history that the window shows, and how far down they stand in it.
    std::map<QString, double> goalsInSight() {
        (void)ui().picture();
        std::map<QString, double> places;
        for (const QString &name : ui().names(QAccessible::StaticText)) {
            if (!name.startsWith(u"goal "_s) && name != u"finished meanwhile"_s)
                continue;
            const double top = test::LayoutProbe(ui()).place(name).top();
            if (top > 0 && top < 700)
                places[name] = top;
        }
        return places;
    }
};

TEST_F(ShellScreen, ShowsFourTabsAndTheFirstTabsScreen) {
    EXPECT_EQ(ui().names(QAccessible::PageTab),
              (QStringList{u"Timer"_s, u"Insights"_s, u"History"_s, u"Settings"_s}));
    EXPECT_TRUE(ui().has(u"Session Setup"_s));
}

TEST_F(ShellScreen, NothingChangesItsLookBecauseAnAlertLiesOverIt) {
    for (int tab = 0; tab < 4; ++tab) {
        content().setSelectedTab(tab);
        ASSERT_TRUE(ui().waitUntil([&] { return isAtRest(tab); }));
        expectNoOtherLookBehindAnAlert();
    }
    EXPECT_EQ(ui().find(u"Save API Key"_s)->opacity(), 0.5);
    ASSERT_TRUE(ui().click(u"Enter your Gemini API key"_s));
    ui().type(u"key"_s);
    ASSERT_TRUE(ui().click(u"Settings"_s, QAccessible::PageTab));
    EXPECT_EQ(ui().find(u"Save API Key"_s)->opacity(), 1);
    expectNoOtherLookBehindAnAlert();
}

TEST_F(ShellScreen, ATabShowsItsSymbolAndItsLabelAndIsSelectedWhileItsScreenIsShown) {
    const std::vector<std::pair<QString, QString>> tabs = {{u"Timer"_s, u"timer"_s},
                                                           {u"Insights"_s, u"chart.bar"_s},
                                                           {u"History"_s, u"book.closed"_s},
                                                           {u"Settings"_s, u"gear"_s}};
    for (const auto &[label, symbol] : tabs) {
        const QQuickItem *const tab = ui().find(label, QAccessible::PageTab);
        ASSERT_TRUE(tab) << qPrintable(label);
        const auto looks = test::looksOf(test::symbolsIn(tab));
        ASSERT_EQ(looks.size(), 1U) << qPrintable(label);
        EXPECT_EQ(looks.front().symbol, symbol);
        EXPECT_TRUE(test::LayoutProbe(ui()).text(label).isVisible());
        ASSERT_TRUE(ui().click(label, QAccessible::PageTab));
        for (const auto &[other, unused] : tabs)
            EXPECT_EQ(isSelected(other), other == label) << qPrintable(other);
    }
}

TEST_F(ShellScreen, EachTabsScreenLiesOnThePageOfItsIndex) {
    const std::vector<std::pair<QString, QString>> tabs = {
        {u"Timer"_s, u"Session Setup"_s},
        {u"Insights"_s, u"Your Focus Journey"_s},
        {u"History"_s, u"Session History"_s},
        {u"Settings"_s, u"Configure your AI and server preferences"_s}};
    for (std::size_t index = 0; index < tabs.size(); ++index) {
        const auto &[label, heading] = tabs[index];
        ASSERT_TRUE(ui().click(label, QAccessible::PageTab));
        ASSERT_TRUE(ui().waitUntil([&] { return ui().has(heading); })) << qPrintable(heading);
        const QQuickItem *const page = test::around(ui().find(heading), "identity");
        ASSERT_TRUE(page) << qPrintable(heading);
        EXPECT_EQ(page->property("identity").toString(), u"tab-%1"_s.arg(index));
    }
}

TEST_F(ShellScreen, ShowsNoTitleOfTheWindow) {
    EXPECT_FALSE(ui().has(u"TARNE"_s));
}

TEST_F(ShellScreen, OffersToCloseAndToMinimizeAndNothingElse) {
    EXPECT_THAT(ui().names(QAccessible::Button),
                IsSupersetOf({u"Menu"_s, u"Minimize window"_s, u"Close window"_s}));
    for (const QString &name : ui().names()) {
        EXPECT_FALSE(name.contains(u"zoom"_s, Qt::CaseInsensitive));
        EXPECT_FALSE(name.contains(u"full screen"_s, Qt::CaseInsensitive));
    }
}

TEST_F(ShellScreen, APressOnATabShowsItAndHidesTheOther) {
    ASSERT_TRUE(ui().click(u"History"_s));
    EXPECT_EQ(content().selectedTab(), 2);
    EXPECT_TRUE(ui().waitUntil([&] { return !ui().has(u"Session Setup"_s); }));
    ASSERT_TRUE(ui().click(u"Timer"_s));
    EXPECT_TRUE(ui().waitUntil([&] { return ui().has(u"Session Setup"_s); }));
}

TEST_F(ShellScreen, TheOrbLeavesAndReturnsTogetherWithItsPage) {
    const GlowingOrbView *const orb = orbBelow(*ui().root());
    ASSERT_TRUE(orb);
    AnimationClock clock;
    content().setSelectedTab(1);
    clock.pass(150);
    EXPECT_TRUE(orb->isVisible());
    clock.pass(150);
    EXPECT_FALSE(orb->isVisible());
    content().setSelectedTab(0);
    ui().settle();
    clock.pass(150);
    EXPECT_TRUE(orb->isVisible());
    EXPECT_TRUE(ui().waitUntil([&] { return orb->isAnimating(); }));
}

TEST_F(ShellScreen, APausedOrbMovesAgainWhenItsPageReturns) {
    startSession(u"Write report"_s);
    ASSERT_TRUE(ui().click(u"Pause"_s));
    const GlowingOrbView *const orb = orbBelow(*ui().root());
    ASSERT_TRUE(orb);
    AnimationClock clock;
    for (const int milliseconds : {300, 150}) { // Out of sight; on its way there.
        content().sessionViewModel().resumeTimer();
        content().sessionViewModel().pauseTimer();
        ui().settle();
        ASSERT_FALSE(orb->pulseAnimation());
        content().setSelectedTab(1);
        clock.pass(milliseconds);
        EXPECT_FALSE(orb->pulseAnimation());
        content().setSelectedTab(0);
        ui().settle();
        clock.pass(300);
        EXPECT_TRUE(orb->pulseAnimation()) << milliseconds;
    }
}

TEST_F(ShellScreen, TheInsightsAndTheHistoryAreTabs) {
    ASSERT_TRUE(ui().click(u"Insights"_s, QAccessible::PageTab));
    EXPECT_TRUE(ui().waitUntil([&] { return ui().has(u"Your Focus Journey"_s); }));
    ASSERT_TRUE(ui().click(u"History"_s, QAccessible::PageTab));
    EXPECT_TRUE(ui().waitUntil([&] { return ui().has(u"Session History"_s); }));
    EXPECT_TRUE(ui().waitUntil([&] { return !ui().has(u"Your Focus Journey"_s); }));
    EXPECT_TRUE(ui().has(u"Complete project proposal"_s));
}

TEST_F(ShellScreen, TheHistoryIsWhereItsReaderLeftItWhenItsTabIsShownAgain) {
    storeUnevenHistory();
    showHistory();
    readOn(8);
    const auto left = goalsInSight();
    ASSERT_GT(left.size(), 1U);
    for (int visit = 0; visit < 3; ++visit) {
        showTimer();
        showHistory();
        EXPECT_EQ(goalsInSight(), left) << "at return " << visit + 1;
    }
}

TEST_F(ShellScreen, TheHistorysReaderKeepsTheirPlaceWhereASessionWasFinishedMeanwhile) {
    storeUnevenHistory();
    showHistory();
    readOn(8);
    auto left = goalsInSight();
    showTimer();
    content().sessionViewModel().saveSessionToHistory(
        {.goals = {{.text = u"finished meanwhile"_s}}, .endTime = time.now() + 1});
    showHistory();
    EXPECT_EQ(goalsInSight(), left);
}

TEST_F(ShellScreen, AtTheTopOfTheHistoryItsReaderStaysThereAndSeesWhatWasFinishedMeanwhile) {
    storeUnevenHistory();
    showHistory();
    const auto topOfHead = [this] {
        (void)ui().picture();
        return test::LayoutProbe::place(*ui().find(u"Session History"_s, QAccessible::Heading))
            .top();
    };
    const double top = topOfHead();
    showTimer();
    content().sessionViewModel().saveSessionToHistory(
        {.goals = {{.text = u"finished meanwhile"_s}}, .endTime = time.now() + 1});
    showHistory();
    EXPECT_TRUE(goalsInSight().contains(u"finished meanwhile"_s));
    EXPECT_EQ(topOfHead(), top);
}

TEST_F(ShellScreen, ACoachingTextIsStillOpenWhenTheTabIsShownAgain) {
    storeUnevenHistory();
    showHistory();
    ASSERT_TRUE(ui().click(u"Suggestions"_s, QAccessible::Button));
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"advice 0"_s); }));
    showTimer();
    showHistory();
    EXPECT_TRUE(ui().has(u"advice 0"_s));
}

TEST_F(ShellScreen, TheArrowKeysMoveBetweenTheTabs) {
    while (ui().focusedName() != u"Timer"_s)
        ui().tab();
    ui().key(Qt::Key_Right);
    EXPECT_EQ(content().selectedTab(), 1);
    EXPECT_EQ(ui().focusedName(), u"Insights"_s);
    ui().key(Qt::Key_Left);
    ui().key(Qt::Key_Left);
    EXPECT_EQ(content().selectedTab(), 0);
}

TEST_F(ShellScreen, ASessionThatBeginsHandsTheKeyboardToItsFirstButton) {
    while (ui().focusedName() != u"Start Session"_s)
        ui().tab();
    ui().key(Qt::Key_Space);
    while (ui().focusedName() != u"Continue"_s)
        ui().tab();
    ui().key(Qt::Key_Space);
    pass(0.3);
    ui().settle();
    ui().type(u"Read a book"_s);
    while (ui().focusedName() != u"Start session"_s)
        ui().tab();
    ui().key(Qt::Key_Space);
    ui().settle();
    EXPECT_EQ(ui().focusedName(), u"Pause"_s);
}

TEST_F(ShellScreen, TheMenuHoldsItsThreeEntriesInOrder) {
    ASSERT_TRUE(ui().click(u"Menu"_s));
    EXPECT_EQ(ui().names(QAccessible::MenuItem),
              (QStringList{u"New Session"_s, u"Check for Updates..."_s, u"Quit TARNE"_s}));
}

TEST_F(ShellScreen, TheMenuShowsTheKeysOfItsEntries) {
    ASSERT_TRUE(ui().click(u"Menu"_s));
    EXPECT_EQ(keysOf(u"New Session"_s), u"Ctrl+N"_s);
    EXPECT_EQ(keysOf(u"Check for Updates..."_s), QString());
    EXPECT_EQ(keysOf(u"Quit TARNE"_s), u"Ctrl+Q"_s);
    EXPECT_TRUE(test::LayoutProbe(ui()).text(u"Ctrl+N"_s).isVisible());
}

TEST_F(ShellScreen, TheLinesOfTheTitleStripsSymbolsLieOnWholePixels) {
    const QImage picture = ui().picture();
    // The rows of a symbol that are drawn in its middle column, each with its strength.
    const auto linesOf = [&](const QString &name) {
        const QRectF place = test::LayoutProbe::place(*ui().find(name, QAccessible::Button));
        std::vector<int> lines;
        for (int y = int(place.top()); y < int(place.bottom()); ++y) {
            const int darkness = 255 - picture.pixelColor(int(place.center().x()), y).red();
            if (darkness > 8)
                lines.push_back(darkness);
        }
        return lines;
    };
    const int full = SystemColors::secondaryLabel.alpha();
    for (const auto &[name, count] :
         {std::pair(u"Menu"_s, std::size_t(3)), std::pair(u"Minimize window"_s, std::size_t(1))}) {
        const std::vector<int> lines = linesOf(name);
        EXPECT_EQ(lines.size(), count) << qPrintable(name);
        for (const int darkness : lines)
            EXPECT_GT(darkness, full * 0.85) << qPrintable(name);
    }
}

TEST_F(ShellScreen, ASecondPressOnTheMenuButtonClosesTheMenu) {
    ASSERT_TRUE(ui().click(u"Menu"_s));
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Quit TARNE"_s); }));
    ASSERT_TRUE(ui().click(u"Menu"_s));
    EXPECT_TRUE(ui().waitUntil([&] { return !ui().has(u"Quit TARNE"_s); }));
}

TEST_F(ShellScreen, TheMenuQuits) {
    QSignalSpy quit(&app(), &TARNEApp::quitRequested);
    ASSERT_TRUE(ui().click(u"Menu"_s));
    ASSERT_TRUE(ui().click(u"Quit TARNE"_s));
    EXPECT_EQ(quit.size(), 1);
}

TEST_F(ShellScreen, TheMenuIsUsedByTheKeyboardAlone) {
    QSignalSpy quit(&app(), &TARNEApp::quitRequested);
    while (ui().focusedName() != u"Menu"_s)
        ui().tab();
    ui().key(Qt::Key_Space);
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Quit TARNE"_s); }));
    ui().key(Qt::Key_Escape);
    ASSERT_TRUE(ui().waitUntil([&] { return !ui().has(u"Quit TARNE"_s); }));
    EXPECT_TRUE(ui().waitUntil([&] { return ui().focusedName() == u"Menu"_s; }));
    ui().key(Qt::Key_Space);
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Quit TARNE"_s); }));
    for (int i = 0; i < 3; ++i)
        ui().key(Qt::Key_Down);
    EXPECT_EQ(quit.size(), 0);
    ui().key(Qt::Key_Return);
    EXPECT_TRUE(ui().waitUntil([&] { return quit.size() == 1; }));
}

TEST_F(ShellScreen, ControlQQuits) {
    QSignalSpy quit(&app(), &TARNEApp::quitRequested);
    ui().key(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(quit.size(), 1);
}

TEST_F(ShellScreen, ControlQQuitsWithASheetUpAsWell) {
    QSignalSpy quit(&app(), &TARNEApp::quitRequested);
    ASSERT_TRUE(ui().click(u"Start Session"_s));
    ASSERT_TRUE(ui().has(u"Select Session Duration"_s));
    ui().key(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(quit.size(), 1);
}

TEST_F(ShellScreen, ItsButtonsMinimizeAndCloseTheWindow) {
    ui();
    window.show();
    ASSERT_TRUE(ui().click(u"Minimize window"_s));
    EXPECT_TRUE(window.windowStates() & Qt::WindowMinimized);
    ASSERT_TRUE(ui().click(u"Close window"_s));
    EXPECT_FALSE(window.isVisible());
}

TEST_F(ShellScreen, ControlNDoesNothing) {
    ui();
    defaults.takeWrites();
    ui().key(Qt::Key_N, Qt::ControlModifier);
    EXPECT_TRUE(defaults.takeWrites().isEmpty());
    EXPECT_FALSE(content().sessionViewModel().currentSession());
    EXPECT_TRUE(ui().has(u"Session Setup"_s));
}

TEST_F(ShellScreen, CheckingForUpdatesTellsTheResultInAnAlert) {
    ASSERT_TRUE(ui().click(u"Menu"_s));
    ASSERT_TRUE(ui().click(u"Check for Updates..."_s));
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Updates Are Not Set Up"_s); }));
    ASSERT_TRUE(ui().click(u"OK"_s));
    EXPECT_TRUE(ui().waitUntil([&] { return !ui().has(u"Updates Are Not Set Up"_s); }));
}

TEST_F(ShellScreen, ASheetCoversTheTabsAndTheTitleStrip) {
    ASSERT_TRUE(ui().click(u"Start Session"_s));
    EXPECT_TRUE(ui().waitUntil([&] { return ui().has(u"Select Session Duration"_s); }));
    EXPECT_FALSE(ui().has(u"History"_s));
}

/// The window of a user who has not finished onboarding.
class ShellOfANewUser : public ShellScreen {
private:
    void SetUp() override {}
};

TEST_F(ShellOfANewUser, LeadsFromOnboardingToTheTabsAndBackWithoutAWarning) {
    ASSERT_TRUE(ui().click(u"Next"_s));
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Complete Setup"_s); }));
    ASSERT_TRUE(ui().click(u"Enter your Gemini API key"_s));
    ui().type(u"key"_s);
    ASSERT_TRUE(ui().click(u"Start Focusing"_s));
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Start Using TARNE"_s); }));
    EXPECT_FALSE(app().showsTabs());
    ui().key(Qt::Key_Return);
    EXPECT_TRUE(ui().waitUntil([&] { return ui().has(u"Session Setup"_s); }));
    EXPECT_FALSE(ui().has(u"Complete Setup"_s));
    app().windowClosed();
    defaults.removeObjectForKey(keys::userPreferences);
    app().windowShown();
    EXPECT_TRUE(ui().waitUntil([&] { return ui().has(u"Next"_s); }));
    EXPECT_FALSE(ui().has(u"Session Setup"_s));
}

} // namespace
} // namespace tarne::test
