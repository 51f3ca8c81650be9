#include "LayoutProbe.h"
#include "SettingsFixture.h"
#include "TARNEStyle.h"
#include "TextLook.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::DoubleNear;

namespace tarne::test {
namespace {

using Fonts = TARNEStyle::Typography;
using Colors = TARNEStyle::Colors;

const QString fixedText = u"The classification server runs locally on port 3000"_s;
const QString keyNote =
    u"Get your free API key from Google AI Studio. The key is stored securely on your device."_s;
const QStringList aboutTexts{
    u"TARNE uses AI to intelligently classify web content based on your session goals."_s,
    u"• Server runs locally for privacy"_s,
    u"• No data is sent to external servers except Gemini AI for classification"_s,
    u"• Your API key is stored securely in macOS Keychain"_s};

class SettingsLayout : public SettingsScreenTest {
protected:
    LayoutProbe probe() { return LayoutProbe(ui()); }

    /// The group box under this title.
    QQuickItem &box(const QString &title) { return *probe().item(title).parentItem(); }
    /// The frame of the group box, and the column in it.
    QQuickItem &frame(const QString &title) { return *box(title).childItems().at(1); }
    QQuickItem &content(const QString &title) { return *frame(title).childItems().constFirst(); }
    /// The n-th visible thing in the group box.
    QRectF row(const QString &title, int index) {
        QList<QQuickItem *> rows;
        for (QQuickItem *const item : content(title).childItems()) {
            if (item->isVisible())
                rows += item;
        }
        return index < rows.size() ? placeOf(*rows.at(index)) : QRectF();
    }

    /// The small circle before the status.
    QQuickItem &lamp() {
        return *probe().item(view.statusText()).parentItem()->childItems().constFirst();
    }

    void expectButton(const QString &name, bool isProminent, bool isSmall) {
        const QQuickItem &button = probe().item(name, QAccessible::Button);
        EXPECT_EQ(button.property("isProminent"), isProminent) << qPrintable(name);
        EXPECT_EQ(button.property("isSmall"), isSmall) << qPrintable(name);
    }
};

TEST_F(SettingsLayout, SetsItsPartsApartAsTold) {
    const QRectF title = probe().place(u"Settings"_s, QAccessible::Heading);
    const QRectF line = probe().place(u"Configure your AI and server preferences"_s);
    const QRectF first = placeOf(box(u"Server Status"_s));
    const QRectF second = placeOf(box(u"Gemini AI Configuration"_s));
    const QRectF third = placeOf(box(u"About"_s));
    EXPECT_EQ(title.top(), 16);
    EXPECT_THAT(title.center().x(), DoubleNear(500, 1));
    EXPECT_EQ(line.top(), title.bottom() + 8);
    EXPECT_THAT(line.center().x(), DoubleNear(500, 1));
    EXPECT_EQ(first.top(), line.bottom() + 24);
    EXPECT_EQ(second.top(), first.bottom() + 20);
    EXPECT_EQ(third.top(), second.bottom() + 20);
    for (const QRectF &place : {first, second, third}) {
        EXPECT_EQ(place.left(), 16);
        EXPECT_EQ(place.right(), 1000 - 16);
    }
    EXPECT_EQ(LayoutProbe::color(*ui().root()), Colors::background);
    QQuickItem *column = &box(u"About"_s);
    while (!column->property("bottomPadding").isValid() || !column->property("contentY").isValid())
        column = column->parentItem();
    EXPECT_EQ(column->property("bottomPadding"), 16);
}

TEST_F(SettingsLayout, ItsGroupBoxesKeepTheirPaddingAndSpacing) {
    for (const QString &title : {u"Server Status"_s, u"Gemini AI Configuration"_s, u"About"_s}) {
        EXPECT_EQ(box(title).property("verticalPadding"), 8) << qPrintable(title);
        // The frame has a margin of its own around what it holds.
        EXPECT_EQ(placeOf(content(title)).top(), placeOf(frame(title)).top() + 8 + 4);
        EXPECT_EQ(placeOf(content(title)).bottom(), placeOf(frame(title)).bottom() - 8 - 4);
    }
    EXPECT_EQ(row(u"Server Status"_s, 1).top(), row(u"Server Status"_s, 0).bottom() + 12);
    for (int next = 1; next <= 3; ++next) {
        EXPECT_EQ(row(u"Gemini AI Configuration"_s, next).top(),
                  row(u"Gemini AI Configuration"_s, next - 1).bottom() + 12);
        EXPECT_EQ(row(u"About"_s, next).top(), row(u"About"_s, next - 1).bottom() + 8);
    }
}

TEST_F(SettingsLayout, WritesInItsFontsAndColours) {
    expectLook(ui(), u"Settings"_s, Fonts::heading1(), Colors::primaryText);
    expectLook(ui(), u"Configure your AI and server preferences"_s, Fonts::body(),
               Colors::secondaryText);
    expectLook(ui(), u"Server Stopped"_s, Fonts::system(14, QFont::Medium), Colors::primaryText);
    expectLook(ui(), u"API Key"_s, Fonts::system(14, QFont::Medium), Colors::primaryText);
    for (const QString &note : QStringList{fixedText, keyNote} + aboutTexts)
        expectLook(ui(), note, Fonts::system(10), SystemColors::secondaryLabel);
}

TEST_F(SettingsLayout, TheLampIsEightByEightAndGreenWhileTheServerRuns) {
    EXPECT_EQ(lamp().size(), QSizeF(8, 8));
    EXPECT_EQ(lamp().property("radius"), 4);
    EXPECT_EQ(LayoutProbe::color(lamp()), SystemColors::red);
    EXPECT_EQ(probe().place(u"Server Stopped"_s).left(), placeOf(lamp()).right() + 8);
    start();
    EXPECT_EQ(LayoutProbe::color(lamp()), SystemColors::green);
}

TEST_F(SettingsLayout, StartIsProminentAndRestartIsNotAndBothAreSmallAtTheRight) {
    const double right = placeOf(content(u"Server Status"_s)).right();
    expectButton(u"Start"_s, true, true);
    EXPECT_EQ(probe().place(u"Start"_s).right(), right);
    start();
    expectButton(u"Restart"_s, false, true);
    EXPECT_EQ(probe().place(u"Restart"_s).right(), right);
    EXPECT_EQ(ui().names(QAccessible::Button).filter(u"Stop"_s), QStringList());
}

TEST_F(SettingsLayout, TheServersErrorStandsInRedSmallPrintBelowTheStatus) {
    bundle.files.clear();
    manager->startServer();
    const QString error = u"Server binary not found in app bundle or project root"_s;
    expectLook(ui(), error, Fonts::system(10), SystemColors::red);
    EXPECT_EQ(probe().item(error).property("topPadding"), 4);
    EXPECT_EQ(probe().place(error), row(u"Server Status"_s, 1));
    EXPECT_EQ(probe().place(error).top(), row(u"Server Status"_s, 0).bottom() + 12);
    EXPECT_EQ(probe().place(fixedText).top(), probe().place(error).bottom() + 12);
}

TEST_F(SettingsLayout, SavingIsProminentAndGettingAKeyIsNot) {
    expectButton(u"Save API Key"_s, true, false);
    expectButton(u"Get API Key"_s, false, false);
    EXPECT_EQ(probe().place(u"Save API Key"_s).left(),
              placeOf(content(u"Gemini AI Configuration"_s)).left());
    EXPECT_EQ(probe().place(u"Get API Key"_s).left(), probe().place(u"Save API Key"_s).right() + 8);
}

TEST_F(SettingsLayout, TheEyeStandsBehindTheFieldInTheSystemsSecondaryColour) {
    const QQuickItem &field = probe().item(u"Enter your Gemini API key"_s);
    const QQuickItem &eye = probe().item(u"Show key"_s);
    EXPECT_EQ(field.property("cornerRadius"), 6);
    EXPECT_EQ(LayoutProbe::color(eye), SystemColors::secondaryLabel);
    EXPECT_EQ(eye.property("symbol"), u"eye"_s);
    EXPECT_EQ(placeOf(eye).left(), placeOf(field).right() + 8);
    EXPECT_EQ(placeOf(eye).right(), placeOf(content(u"Gemini AI Configuration"_s)).right());
    ASSERT_TRUE(ui().click(u"Show key"_s));
    EXPECT_EQ(probe().item(u"Hide key"_s).property("symbol"), u"eye.slash"_s);
}

} // namespace
} // namespace tarne::test
