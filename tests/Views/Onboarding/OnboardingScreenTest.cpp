#include "OnboardingFixture.h"

#include "TARNEStyle.h"
#include "UserPreferences.h"

#include <QPainter>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace tarne::test {
namespace {

class OnboardingScreen : public OnboardingScreenTest {
protected:
    QQuickItem *field() {
        return ui().find(u"Enter your Gemini API key"_s, QAccessible::EditableText);
    }

    /// The colours of the two page dots.
    std::pair<QRgb, QRgb> dots() {
        const QImage picture = ui().picture();
        const int y = static_cast<int>(TARNEStyle::Layout::spacingMedium) + 4;
        return {picture.pixel(500 - 8, y), picture.pixel(500 + 8, y)};
    }

    /// How `color` looks on the screen's ground.
    static QRgb drawn(const QColor &color) {
        QImage picture(1, 1, QImage::Format_RGB32);
        picture.fill(TARNEStyle::Colors::background);
        QPainter(&picture).fillRect(picture.rect(), color);
        return picture.pixel(0, 0);
    }

    const MemoryKeychain::Address address{u"com.tarne.app"_s, u"GeminiAPIKey"_s};
};

TEST_F(OnboardingScreen, WelcomesWithItsTextsAndOneButton) {
    EXPECT_THAT(ui().texts(),
                ElementsAre(u"TARNE"_s, u"TARNE"_s, u"Set a goal, block what's distracting,"_s,
                            u"and stay focused on the work that matters most"_s));
    EXPECT_THAT(ui().names(QAccessible::Button), ElementsAre(u"Next"_s));
    EXPECT_TRUE(ui().isEnabled(u"Next"_s));
}

TEST_F(OnboardingScreen, ExplainsTheExtensionAndAsksForTheKeyOnItsSecondPage) {
    openSetup();
    EXPECT_THAT(
        ui().texts(),
        ElementsAre(
            u"Complete Setup"_s, u"Configure Safari extension and AI to start focusing"_s,
            u"Safari Extension Setup"_s, u"1."_s, u"Open Safari so it's the active app"_s, u"2."_s,
            u"In the top menu bar, click Safari → Settings (⌘,)"_s, u"3."_s,
            u"Go to the Extensions tab"_s, u"4."_s, u"Check (✓) TARNEExtension to enable it"_s,
            u"Gemini AI Configuration"_s, u"API Key"_s,
            u"Click the button above to open the Gemini page. Press Get Gemini API, and if it "
            "asks, just make or pick a project. You'll then see your key—copy it and paste it "
            "here. This key lets the app connect to Gemini to power the AI features. Don't worry, "
            "the key stays safe on your Mac using the built-in Keychain."_s));
    EXPECT_TRUE(ui().has(u"Complete Setup"_s, QAccessible::Heading));
    EXPECT_THAT(ui().names(QAccessible::Button),
                ElementsAre(u"Show key"_s, u"Get Free API Key"_s, u"Back"_s, u"Start Focusing"_s));
}

TEST_F(OnboardingScreen, TheFirstDotIsAlwaysAccentAndTheSecondOnTheSecondPage) {
    const QRgb accent = drawn(TARNEStyle::Colors::accent);
    EXPECT_EQ(dots(), std::pair(accent, drawn(TARNEStyle::Colors::border)));
    openSetup();
    EXPECT_TRUE(ui().waitUntil([&] { return dots() == std::pair(accent, accent); }));
}

TEST_F(OnboardingScreen, BackAndNextKeepTheKeyAndItsVisibility) {
    openSetup();
    ASSERT_TRUE(ui().click(u"Enter your Gemini API key"_s));
    ui().type(u"my key"_s);
    ASSERT_TRUE(ui().click(u"Show key"_s));
    ASSERT_TRUE(ui().click(u"Back"_s));
    ASSERT_TRUE(ui().waitUntil([&] { return !ui().has(u"Complete Setup"_s); }));
    ASSERT_TRUE(ui().waitUntil([&] { return !ui().has(u"Back"_s); }));
    openSetup();
    EXPECT_EQ(field()->property("text").toString(), u"my key"_s);
    EXPECT_TRUE(ui().has(u"Hide key"_s));
}

TEST_F(OnboardingScreen, StartFocusingWantsMoreThanBlanks) {
    openSetup();
    EXPECT_FALSE(ui().isEnabled(u"Start Focusing"_s));
    ASSERT_TRUE(ui().click(u"Enter your Gemini API key"_s));
    ui().type(u"   "_s);
    EXPECT_FALSE(ui().isEnabled(u"Start Focusing"_s));
    ui().type(u"k"_s);
    EXPECT_TRUE(ui().isEnabled(u"Start Focusing"_s));
    ui().key(Qt::Key_Backspace);
    EXPECT_FALSE(ui().isEnabled(u"Start Focusing"_s));
}

TEST_F(OnboardingScreen, TheKeyIsMaskedUntilTheEyeIsPressed) {
    openSetup();
    ASSERT_TRUE(ui().click(u"Enter your Gemini API key"_s));
    ui().type(u"abc"_s);
    EXPECT_EQ(field()->property("displayText").toString(), u"•••"_s);
    ASSERT_TRUE(ui().click(u"Show key"_s));
    EXPECT_EQ(field()->property("displayText").toString(), u"abc"_s);
    ASSERT_TRUE(ui().click(u"Hide key"_s));
    EXPECT_EQ(field()->property("displayText").toString(), u"•••"_s);
}

TEST_F(OnboardingScreen, TheFieldIsOutlinedInBlueWhileFocusedAndInBlackOtherwise) {
    openSetup();
    EXPECT_EQ(field()->property("outlineColor").value<QColor>(), QColor(SystemColors::black));
    EXPECT_EQ(field()->property("color").value<QColor>(), QColor(SystemColors::black));
    ASSERT_TRUE(ui().click(u"Enter your Gemini API key"_s));
    EXPECT_EQ(field()->property("outlineColor").value<QColor>(), QColor(SystemColors::blue));
}

TEST_F(OnboardingScreen, TheLinkOpensTheKeyPageAndIsWideEnough) {
    openSetup();
    EXPECT_GE(ui().find(u"Get Free API Key"_s)->width(), 130);
    EXPECT_EQ(ui().cursorOver(u"Get Free API Key"_s), Qt::PointingHandCursor);
    ASSERT_TRUE(ui().click(u"Get Free API Key"_s));
    EXPECT_THAT(workspace.opened, ElementsAre(QUrl(u"https://aistudio.google.com/app/apikey"_s)));
}

TEST_F(OnboardingScreen, CompletingStoresTheTrimmedKeyAndShowsTheAlert) {
    openSetup();
    ASSERT_TRUE(ui().click(u"Enter your Gemini API key"_s));
    ui().type(u" my key "_s);
    ASSERT_TRUE(ui().click(u"Start Focusing"_s));
    EXPECT_EQ(keychain.items.at(address), "my key");
    EXPECT_TRUE(UserPreferences::load(defaults).hasCompletedOnboarding);
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Start Using TARNE"_s); }));
    EXPECT_THAT(
        ui().names(),
        UnorderedElementsAre(u"Setup Complete"_s, u"Setup Complete"_s,
                             u"Your API key has been saved and TARNE is ready to help you focus!"_s,
                             u"Start Using TARNE"_s));
    EXPECT_FALSE(view.isOnboardingComplete());
    ui().key(Qt::Key_Escape);
    EXPECT_TRUE(ui().has(u"Start Using TARNE"_s));
    EXPECT_FALSE(view.isOnboardingComplete());
    ASSERT_TRUE(ui().click(u"Start Using TARNE"_s));
    EXPECT_TRUE(view.isOnboardingComplete());
}

TEST_F(OnboardingScreen, TheKeyboardLeadsThroughItInReadingOrder) {
    ASSERT_EQ(ui().focusedName(), u"Next"_s);
    ui().key(Qt::Key_Space);
    ASSERT_TRUE(ui().waitUntil([&] { return !ui().has(u"TARNE"_s) && ui().has(u"Back"_s); }));
    QStringList order;
    ASSERT_TRUE(ui().click(u"Enter your Gemini API key"_s));
    ui().type(u"k"_s);
    for (int step = 0; step < 5; ++step) {
        order += ui().focusedName();
        ui().tab();
    }
    EXPECT_THAT(order, ElementsAre(u"Enter your Gemini API key"_s, u"Show key"_s,
                                   u"Get Free API Key"_s, u"Back"_s, u"Start Focusing"_s));
    EXPECT_EQ(ui().focusedName(), u"Complete Setup"_s);
}

TEST_F(OnboardingScreen, AHiddenPageCannotBeReached) {
    const QStringList first = ui().names();
    EXPECT_FALSE(first.contains(u"Get Free API Key"_s));
    openSetup();
    EXPECT_FALSE(ui().has(u"Next"_s));
    EXPECT_FALSE(ui().has(u"Set a goal, block what's distracting,"_s));
}

} // namespace
} // namespace tarne::test
