#include "SettingsFixture.h"

#include "TARNEStyle.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace tarne::test {
namespace {

class SettingsScreen : public SettingsScreenTest {
protected:
    QQuickItem *field() {
        return ui().find(u"Enter your Gemini API key"_s, QAccessible::EditableText);
    }

    void type(const QString &key) {
        ASSERT_TRUE(ui().click(u"Enter your Gemini API key"_s));
        ui().type(key);
    }

    /// The colour of the circle before the status.
    QColor lamp() {
        const QQuickItem *const status = ui().find(view.statusText());
        const QPointF left = status->mapToScene(QPointF(0, status->height() / 2));
        return ui().picture().pixelColor(static_cast<int>(left.x()) - 8 - 4,
                                         static_cast<int>(left.y()));
    }

    const MemoryKeychain::Address address{u"com.tarne.app"_s, u"GeminiAPIKey"_s};
};

TEST_F(SettingsScreen, ShowsItsTextsInOrder) {
    EXPECT_TRUE(ui().has(u"Settings"_s, QAccessible::Heading));
    EXPECT_THAT(
        ui().texts(),
        ElementsAre(
            u"Settings"_s, u"Configure your AI and server preferences"_s, u"Server Status"_s,
            u"Server Stopped"_s, u"The classification server runs locally on port 3000"_s,
            u"Gemini AI Configuration"_s, u"API Key"_s,
            u"Get your free API key from Google AI Studio. The key is stored securely on your "
            "device."_s,
            u"About"_s,
            u"TARNE uses AI to intelligently classify web content based on your session goals."_s,
            u"• Server runs locally for privacy"_s,
            u"• No data is sent to external servers except Gemini AI for classification"_s,
            u"• Your API key is stored securely in macOS Keychain"_s));
    EXPECT_THAT(ui().names(QAccessible::Button),
                ElementsAre(u"Start"_s, u"Show key"_s, u"Save API Key"_s, u"Get API Key"_s));
}

TEST_F(SettingsScreen, StartsAStoppedServer) {
    EXPECT_EQ(lamp(), QColor(SystemColors::red));
    ASSERT_TRUE(ui().click(u"Start"_s));
    time.runPending();
    EXPECT_EQ(launcher.children.size(), 1U);
    EXPECT_TRUE(ui().has(u"Server Running"_s));
    EXPECT_FALSE(ui().has(u"Start"_s));
    EXPECT_EQ(lamp(), QColor(SystemColors::green));
}

TEST_F(SettingsScreen, RestartsARunningServerAndShowsItStoppedMeanwhile) {
    start();
    ASSERT_TRUE(ui().click(u"Restart"_s));
    time.runPending();
    EXPECT_TRUE(ui().has(u"Server Stopped"_s));
    EXPECT_TRUE(ui().has(u"Start"_s));
    time.advance(RunLoop::Seconds(1.0));
    time.runPending();
    EXPECT_EQ(launcher.children.size(), 2U);
    EXPECT_TRUE(ui().has(u"Server Running"_s));
}

TEST_F(SettingsScreen, ShowsTheServersErrorInRedAndNothingWithoutOne) {
    bundle.files.clear();
    ASSERT_TRUE(ui().click(u"Start"_s));
    const QString error = u"Server binary not found in app bundle or project root"_s;
    ASSERT_TRUE(ui().has(error, QAccessible::Notification));
    EXPECT_EQ(ui().find(error)->property("color").value<QColor>(), QColor(SystemColors::red));
    bundle.files = {server};
    ASSERT_TRUE(ui().click(u"Start"_s));
    time.runPending();
    EXPECT_FALSE(ui().has(error));
}

TEST_F(SettingsScreen, TheTextOfThePortIsFixed) {
    ports.busy = {3000, 3001, 3002, 3003, 3004};
    ASSERT_TRUE(ui().click(u"Start"_s));
    time.runPending();
    EXPECT_EQ(launcher.last().launch.arguments, QStringList(u"3005"_s));
    EXPECT_TRUE(ui().has(u"The classification server runs locally on port 3000"_s));
}

TEST_F(SettingsScreen, WithoutAKeyOrWithOneOfBlanksNothingCanBeSaved) {
    EXPECT_FALSE(ui().isEnabled(u"Save API Key"_s));
    type(u"  "_s);
    EXPECT_FALSE(ui().isEnabled(u"Save API Key"_s));
    ui().type(u"k"_s);
    EXPECT_TRUE(ui().isEnabled(u"Save API Key"_s));
}

TEST_F(SettingsScreen, AStoredKeyStandsInTheFieldMaskedByDotsUntilTheEyeIsPressed) {
    keychain.items[address] = "stored";
    EXPECT_EQ(field()->property("text").toString(), u"stored"_s);
    EXPECT_EQ(field()->property("displayText").toString(), u"••••••"_s);
    ASSERT_TRUE(ui().click(u"Show key"_s));
    EXPECT_EQ(field()->property("displayText").toString(), u"stored"_s);
    EXPECT_TRUE(ui().has(u"Hide key"_s));
}

TEST_F(SettingsScreen, AppearingAgainReplacesWhatWasTypedByTheStoredKey) {
    keychain.items[address] = "stored";
    type(u" and more"_s);
    ASSERT_EQ(field()->property("text").toString(), u"stored and more"_s);
    view.disappear();
    view.appear();
    EXPECT_EQ(field()->property("text").toString(), u"stored"_s);
}

TEST_F(SettingsScreen, SavingStoresTheKeyAndShowsTheAlertAlsoWithAStoppedServer) {
    type(u"new key"_s);
    ASSERT_TRUE(ui().click(u"Save API Key"_s));
    EXPECT_EQ(keychain.items.at(address), "new key");
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"OK"_s); }));
    EXPECT_THAT(ui().names(),
                UnorderedElementsAre(u"API Key Saved"_s, u"API Key Saved"_s,
                                     u"Your API key has been saved and the server will restart to "
                                     "use the new configuration."_s,
                                     u"OK"_s));
    ASSERT_TRUE(ui().click(u"OK"_s));
    EXPECT_TRUE(ui().waitUntil([&] { return ui().has(u"Save API Key"_s); }));
    time.advance(RunLoop::Seconds(10));
    EXPECT_TRUE(launcher.children.empty());
}

TEST_F(SettingsScreen, TheLinkOpensTheKeyPage) {
    EXPECT_EQ(ui().cursorOver(u"Get API Key"_s), Qt::PointingHandCursor);
    ASSERT_TRUE(ui().click(u"Get API Key"_s));
    EXPECT_THAT(workspace.opened, ElementsAre(QUrl(u"https://aistudio.google.com/app/apikey"_s)));
}

TEST_F(SettingsScreen, TheKeyboardLeadsThroughItInReadingOrder) {
    keychain.items[address] = "stored";
    QStringList order;
    for (int step = 0; step < 5; ++step) {
        ui().tab();
        order += ui().focusedName();
    }
    EXPECT_THAT(order, ElementsAre(u"Start"_s, u"Enter your Gemini API key"_s, u"Show key"_s,
                                   u"Save API Key"_s, u"Get API Key"_s));
}

} // namespace
} // namespace tarne::test
