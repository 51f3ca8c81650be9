#include "ShellFixture.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

/// The whole window without a mouse.
class ShellKeyboard : public ShellTest {
protected:
    /// Whether what has the focus shows that it has.
    bool isFocusDrawn() {
        const QQuickItem *const item = ui().view().activeFocusItem();
        return item && item->property("visualFocus").toBool();
    }

    /// How far down the text lies.
    double topOf(const QString &name) {
        const QQuickItem *const item = ui().findText(name);
        EXPECT_TRUE(item) << qPrintable(name);
        return item ? item->mapToScene(QPointF()).y() : 0;
    }

    /// Whether `key` moves the text up.
    bool scrollsBy(Qt::Key key, const QString &name) {
        const double before = topOf(name);
        ui().key(key);
        return ui().waitUntil([&] { return topOf(name) < before; });
    }

    void openSettings() {
        ASSERT_TRUE(ui().click(u"Settings"_s, QAccessible::PageTab));
        ASSERT_TRUE(ui().waitUntil([&] { return isAtRest(3); }));
    }
    void storeTwoCoachedSessions() {
        const auto coachedAt = [](Date moment) {
            return SessionHistoryEntry{.sessionDate = moment,
                                       .goals = {},
                                       .duration = 1500.0,
                                       .overallAssessment = u"Well done."_s,
                                       .motivation = u"Go on."_s};
        };
        content().sessionViewModel().saveSessionHistory(
            {coachedAt(time.now()), coachedAt(time.now() - 3600.0)});
    }
    /// Lets the time of a session run out, and its reflection come.
    void runOut() {
        pass(1501);
        ui().settle();
        ASSERT_TRUE(ui().has(u"How did you do with your goals?"_s, QAccessible::Dialog));
    }
    /// Goes through the two sheets that end a session.
    void finishSession() {
        pressByKey(u"Completed"_s);
        pressByKey(u"Complete reflection"_s);
        ASSERT_TRUE(ui().waitUntil([&] { return !feedback.gemini.requests.empty(); }));
        pressByKey(u"Finish session"_s);
        ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Start Session"_s); }));
    }

    /// What has the focus one after the other, from the next on, until it is back where it was.
    std::vector<std::string> roundOfTab() {
        const QQuickItem *const start = ui().view().activeFocusItem();
        std::vector<std::string> names;
        do {
            ui().tab();
            names.push_back(ui().focusedName().toStdString());
        } while (ui().view().activeFocusItem() != start && names.size() < 40);
        return names;
    }
};

TEST_F(ShellKeyboard, AtLaunchTheFocusIsOnTheButtonThatStartsASession) {
    EXPECT_EQ(ui().focusedName(), u"Start Session"_s);
    ui().key(Qt::Key_Space);
    EXPECT_TRUE(ui().has(u"Select Session Duration"_s));
}

TEST_F(ShellKeyboard, ASheetHandsTheFocusBackDrawnToWhomItCameByKeyboard) {
    openDurationSheet();
    pressByKey(u"Close"_s);
    EXPECT_EQ(ui().focusedName(), u"Start Session"_s);
    EXPECT_FALSE(isFocusDrawn());
    ui().tab();
    ui().backtab();
    ASSERT_TRUE(isFocusDrawn());
    openDurationSheet();
    pressByKey(u"Close"_s);
    EXPECT_EQ(ui().focusedName(), u"Start Session"_s);
    EXPECT_TRUE(isFocusDrawn());
}

TEST_F(ShellKeyboard, WhatTakesThePlaceOfAGoneButtonHasTheFocusAsTheButtonHadIt) {
    ui().tab();
    ui().backtab();
    startSession(u"Read"_s);
    EXPECT_EQ(ui().focusedName(), u"Pause"_s);
    EXPECT_TRUE(isFocusDrawn());
}

TEST_F(ShellKeyboard, AWindowThatComesBackHasTheFocusWhereItWas) {
    tabTo(u"Menu"_s);
    ui().leaveWindow();
    EXPECT_FALSE(ui().view().activeFocusItem());
    ui().returnToWindow();
    EXPECT_EQ(ui().focusedName(), u"Menu"_s);
}

TEST_F(ShellKeyboard, ASheetThatCameBehindAnotherWindowHandsTheFocusBack) {
    startSession(u"Read"_s);
    ASSERT_EQ(ui().focusedName(), u"Pause"_s);
    ui().leaveWindow();
    runOut();
    ui().returnToWindow();
    finishSession();
    EXPECT_EQ(ui().focusedName(), u"Start Session"_s);
}

TEST_F(ShellKeyboard, ASheetThatCameBeforeAClosedWindowWasShownAgainHandsTheFocusBack) {
    startSession(u"Read"_s);
    ui().view().hide();
    ui().leaveWindow();
    app().windowClosed();
    app().windowShown();
    content().timerView()->resetTimer();
    ui().returnToWindow();
    finishSession();
    EXPECT_EQ(ui().focusedName(), u"Start Session"_s);
}

TEST_F(ShellKeyboard, TheRingIsThereAgainWhenTheWindowComesBack) {
    for (const auto reason : {Qt::ActiveWindowFocusReason, Qt::OtherFocusReason}) {
        tabTo(u"Menu"_s);
        ASSERT_TRUE(isFocusDrawn());
        for (int times = 0; times < 2; ++times) {
            ui().leaveWindow(reason);
            ui().returnToWindow(reason);
            ASSERT_EQ(ui().focusedName(), u"Menu"_s);
            EXPECT_TRUE(isFocusDrawn()) << reason;
        }
        ui().tab();
    }
}

TEST_F(ShellKeyboard, ThereIsNoRingWhereTheMouseWasUsedWhenTheWindowComesBack) {
    for (const auto reason : {Qt::ActiveWindowFocusReason, Qt::OtherFocusReason}) {
        ASSERT_EQ(ui().focusedName(), u"Start Session"_s);
        ui().leaveWindow(reason);
        ui().returnToWindow(reason);
        EXPECT_FALSE(isFocusDrawn()) << reason;
    }
}

TEST_F(ShellKeyboard, AMenuThatASheetHasCoveredHandsTheFocusToWhatIsShown) {
    startSession(u"Read"_s);
    ASSERT_EQ(ui().focusedName(), u"Pause"_s);
    ASSERT_TRUE(ui().click(u"Menu"_s));
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Quit TARNE"_s); }));
    runOut();
    finishSession();
    EXPECT_FALSE(ui().has(u"Quit TARNE"_s));
    EXPECT_EQ(ui().focusedName(), u"Start Session"_s);
    ui().key(Qt::Key_Escape);
    EXPECT_EQ(ui().focusedName(), u"Start Session"_s);
    ui().key(Qt::Key_Space);
    EXPECT_TRUE(ui().has(u"Select Session Duration"_s));
    EXPECT_FALSE(content().sessionViewModel().isTimerActive());
}

TEST_F(ShellKeyboard, AMenuThatASheetHasCoveredBehindAnotherWindowHandsTheFocusBack) {
    startSession(u"Read"_s);
    pressByKey(u"Menu"_s);
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Quit TARNE"_s); }));
    ui().leaveWindow();
    runOut();
    ui().returnToWindow();
    pressByKey(u"Close"_s);
    EXPECT_EQ(ui().focusedName(), u"Menu"_s);
    EXPECT_FALSE(ui().has(u"Quit TARNE"_s));
    EXPECT_TRUE(isFocusDrawn());
}

TEST_F(ShellKeyboard, AnAlertKeepsTheFocusWhenTheReflectionBelowItGoesWithAClosedWindow) {
    startSession(u"Read"_s);
    pressByKey(u"Stop"_s);
    updateCheck.present({});
    app().windowClosed();
    app().windowShown();
    ui().settle();
    EXPECT_FALSE(ui().has(u"Pause"_s));
    ui().key(Qt::Key_Return);
    EXPECT_FALSE(updateCheck.isPresented());
    EXPECT_EQ(ui().focusedName(), u"Stop"_s);
}

TEST_F(ShellKeyboard, AnAlertHandsTheFocusBackDrawn) {
    openSettings();
    ASSERT_TRUE(ui().click(u"Enter your Gemini API key"_s));
    ui().type(u"key"_s);
    pressByKey(u"Save API Key"_s);
    ASSERT_TRUE(ui().has(u"API Key Saved"_s));
    ui().key(Qt::Key_Return);
    EXPECT_EQ(ui().focusedName(), u"Save API Key"_s);
    EXPECT_TRUE(isFocusDrawn());
}

TEST_F(ShellKeyboard, TheMenuHandsTheFocusBackDrawn) {
    pressByKey(u"Menu"_s);
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Quit TARNE"_s); }));
    ui().key(Qt::Key_Escape);
    ASSERT_TRUE(ui().waitUntil([&] { return ui().focusedName() == u"Menu"_s; }));
    EXPECT_TRUE(isFocusDrawn());
}

TEST_F(ShellKeyboard, TheMenuHandsTheFocusBackUndrawnToWhomUsedTheMouse) {
    ASSERT_TRUE(ui().click(u"Menu"_s));
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Quit TARNE"_s); }));
    ASSERT_TRUE(ui().click(u"Menu"_s));
    ASSERT_TRUE(ui().waitUntil([&] { return !ui().has(u"Quit TARNE"_s); }));
    EXPECT_FALSE(isFocusDrawn());
}

TEST_F(ShellKeyboard, AnAlertOfTheMenuHandsTheFocusBackDrawn) {
    pressByKey(u"Menu"_s);
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Quit TARNE"_s); }));
    ui().key(Qt::Key_Down);
    ui().key(Qt::Key_Down);
    ui().key(Qt::Key_Return);
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Updates Are Not Set Up"_s); }));
    ASSERT_TRUE(ui().waitUntil([&] { return !ui().has(u"Quit TARNE"_s); }));
    ui().key(Qt::Key_Return);
    ASSERT_TRUE(ui().waitUntil([&] { return !ui().has(u"Updates Are Not Set Up"_s); }));
    EXPECT_TRUE(ui().waitUntil([&] { return ui().focusedName() == u"Menu"_s; }));
    EXPECT_TRUE(isFocusDrawn());
}

TEST_F(ShellKeyboard, ARefusedEmptyDurationBringsTheFocusToItsField) {
    openDurationSheet();
    pressByKey(u"Custom Duration"_s);
    ASSERT_TRUE(ui().waitUntil([&] { return isCustomRowOpen(); }));
    pressByKey(u"Set"_s);
    ASSERT_FALSE(ui().isEnabled(u"Set"_s));
    EXPECT_EQ(ui().focusedName(), u"5-180"_s);
    ui().type(u"50"_s);
    EXPECT_TRUE(ui().isEnabled(u"Set"_s));
}

TEST_F(ShellKeyboard, AFieldThatAPressOfTheMouseClosesLeavesTheFocusToTheButtonThatOpenedIt) {
    for (const QString &closing : {u"Custom Duration"_s, u"25 min"_s}) {
        ASSERT_TRUE(ui().click(u"Start Session"_s));
        ASSERT_TRUE(ui().click(u"Custom Duration"_s));
        ASSERT_TRUE(ui().waitUntil([&] { return isCustomRowOpen(); }));
        ASSERT_TRUE(ui().click(u"5-180"_s));
        ASSERT_EQ(ui().focusedName(), u"5-180"_s);
        ASSERT_TRUE(ui().click(closing));
        EXPECT_EQ(ui().focusedName(), u"Custom Duration"_s) << qPrintable(closing);
        ASSERT_TRUE(ui().waitUntil([&] { return !ui().has(u"5-180"_s); }));
        EXPECT_EQ(ui().focusedName(), u"Custom Duration"_s) << qPrintable(closing);
        ASSERT_TRUE(ui().click(u"Close"_s));
    }
}

TEST_F(ShellKeyboard, ASheetsBodyScrollsAsItOpens) {
    ui(QSize(800, 600));
    startSession(u"One, Two, Three, Four, Five, Six, Seven, Eight"_s);
    pressByKey(u"Stop"_s);
    ASSERT_TRUE(ui().findText(u"One"_s));
    EXPECT_TRUE(scrollsBy(Qt::Key_Down, u"One"_s));
    EXPECT_TRUE(scrollsBy(Qt::Key_PageDown, u"One"_s));
    tabTo(u"Close"_s);
    const double scrolled = topOf(u"One"_s);
    ui().key(Qt::Key_Home);
    EXPECT_TRUE(ui().waitUntil([&] { return topOf(u"One"_s) > scrolled; }));
}

TEST_F(ShellKeyboard, EveryTabsScreenScrollsAsItOpens) {
    ui(QSize(800, 450));
    const std::vector<std::pair<QString, QString>> tabs = {
        {u"Insights"_s, u"Discover patterns and trends in your focus sessions"_s},
        {u"History"_s, u"Session History"_s},
        {u"Settings"_s, u"Configure your AI and server preferences"_s}};
    for (const auto &[tab, text] : tabs) {
        ASSERT_TRUE(ui().click(tab, QAccessible::PageTab));
        ASSERT_TRUE(ui().waitUntil([&] { return ui().has(text); })) << qPrintable(tab);
        EXPECT_TRUE(scrollsBy(Qt::Key_Down, text)) << qPrintable(tab);
    }
    // It opens at its end, where the button is that has the focus.
    ASSERT_TRUE(ui().click(u"Timer"_s, QAccessible::PageTab));
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Session Setup"_s); }));
    const double atEnd = topOf(u"Session Setup"_s);
    ui().key(Qt::Key_Up);
    EXPECT_TRUE(ui().waitUntil([&] { return topOf(u"Session Setup"_s) > atEnd; }));
}

TEST_F(ShellKeyboard, EveryTabsScreenScrollsWhileTheTabHasTheFocus) {
    ui(QSize(800, 450));
    tabTo(u"Timer"_s);
    const std::vector<std::pair<QString, QString>> tabs = {
        {u"Insights"_s, u"Discover patterns and trends in your focus sessions"_s},
        {u"History"_s, u"Session History"_s},
        {u"Settings"_s, u"Configure your AI and server preferences"_s}};
    for (const auto &[tab, text] : tabs) {
        ui().key(Qt::Key_Right);
        ASSERT_EQ(ui().focusedName(), tab);
        ASSERT_TRUE(ui().waitUntil([&] { return ui().has(text); })) << qPrintable(tab);
        EXPECT_TRUE(scrollsBy(Qt::Key_Down, text)) << qPrintable(tab);
        EXPECT_EQ(ui().focusedName(), tab);
    }
}

TEST_F(ShellKeyboard, EachRoundOfTabThroughTheHistoryIsLikeTheFirst) {
    ui();
    storeTwoCoachedSessions();
    tabTo(u"Timer"_s);
    ui().key(Qt::Key_Right);
    ui().key(Qt::Key_Right);
    ASSERT_EQ(ui().focusedName(), u"History"_s);
    ASSERT_TRUE(ui().waitUntil([&] { return isAtRest(2); }));
    const std::vector<std::string> first = roundOfTab();
    ASSERT_EQ(std::ranges::count(first, "Motivation"), 2) << testing::PrintToString(first);
    EXPECT_EQ(roundOfTab(), first);
    EXPECT_EQ(roundOfTab(), first);
}

/// The window of a user who has not finished onboarding, without a mouse.
class ShellKeyboardOfANewUser : public ShellKeyboard {
protected:
    void openSetup() {
        ui().key(Qt::Key_Space);
        ASSERT_TRUE(ui().waitUntil(
            [&] { return ui().has(u"Back"_s) && ui().has(u"Enter your Gemini API key"_s); }));
    }

private:
    void SetUp() override {}
};

TEST_F(ShellKeyboardOfANewUser, TheFocusIsOnNextAtFirst) {
    EXPECT_EQ(ui().focusedName(), u"Next"_s);
}

TEST_F(ShellKeyboardOfANewUser, NextBringsTheFocusToThePageThatItOpens) {
    ui(QSize(800, 450));
    openSetup();
    EXPECT_EQ(ui().focusedName(), u"Complete Setup"_s);
    EXPECT_TRUE(scrollsBy(Qt::Key_Down, u"Complete Setup"_s));
    ui().tab();
    EXPECT_EQ(ui().focusedName(), u"Enter your Gemini API key"_s);
}

TEST_F(ShellKeyboardOfANewUser, BackBringsTheFocusToNextAsBackHadIt) {
    openSetup();
    pressByKey(u"Back"_s);
    EXPECT_EQ(ui().focusedName(), u"Next"_s);
    EXPECT_TRUE(isFocusDrawn());
    ASSERT_TRUE(ui().waitUntil([&] { return !ui().has(u"Back"_s); }));
    EXPECT_EQ(ui().focusedName(), u"Next"_s);
    ui().key(Qt::Key_Space);
    EXPECT_EQ(ui().focusedName(), u"Complete Setup"_s);
}

TEST_F(ShellKeyboardOfANewUser, NextAndBackKeepTheFocusOfWhomUsesTheMouse) {
    ASSERT_TRUE(ui().click(u"Next"_s));
    EXPECT_EQ(ui().focusedName(), u"Complete Setup"_s);
    ASSERT_TRUE(ui().waitUntil(
        [&] { return ui().has(u"Back"_s) && ui().has(u"Enter your Gemini API key"_s); }));
    ASSERT_TRUE(ui().click(u"Enter your Gemini API key"_s));
    ASSERT_TRUE(ui().click(u"Back"_s));
    EXPECT_EQ(ui().focusedName(), u"Next"_s);
    EXPECT_FALSE(isFocusDrawn());
}

TEST_F(ShellKeyboardOfANewUser, TheTabsThatFollowHaveTheFocusOnTheButtonThatStartsASession) {
    openSetup();
    ui().tab();
    ui().type(u"key"_s);
    pressByKey(u"Start Focusing"_s);
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Start Using TARNE"_s); }));
    ui().key(Qt::Key_Return);
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Session Setup"_s); }));
    EXPECT_EQ(ui().focusedName(), u"Start Session"_s);
}

} // namespace
} // namespace tarne::test
