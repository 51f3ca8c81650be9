#include "ControlDocument.h"
#include "TARNEStyle.h"
#include "TestMain.h"

#include <QQmlProperty>

#include <gmock/gmock.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

TEST(PlainText, IsAStaticTextNamedByItself) {
    const UiDriver ui(column(u"PlainText { text: 'Session Setup' }"_s));
    EXPECT_TRUE(ui.has(u"Session Setup"_s, QAccessible::StaticText));
}

TEST(PlainText, ShowsMarkupAsItStands) {
    const UiDriver ui(column(u"PlainText { text: '<b>bold</b> &amp; more' }"_s));
    EXPECT_TRUE(ui.has(u"<b>bold</b> &amp; more"_s));
    EXPECT_EQ(ui.find(u"<b>bold</b> &amp; more"_s)->property("textFormat").toInt(), Qt::PlainText);
}

TEST(LongText, ItsBlocksStandOneBelowTheOther) {
    UiDriver ui(
        column(u"LongText { objectName: 'long'; width: 300; text: 'word '.repeat(2000) }"_s));
    const auto *const text = ui.root()->findChild<QQuickItem *>(u"long"_s);
    ASSERT_TRUE(text);
    const auto topOf = [](const QQuickItem *block) { return block->property("blockTop").toReal(); };
    const auto blocks = [&] {
        QList<QQuickItem *> found = text->childItems();
        found.removeIf([](QQuickItem *item) { return !item->property("blockTop").isValid(); });
        std::ranges::sort(found, {}, topOf);
        return found;
    };
    ASSERT_TRUE(ui.waitUntil([&] { return blocks().size() > 2; }));
    double bottom = 0;
    for (const QQuickItem *const block : blocks()) {
        EXPECT_NEAR(block->y(), bottom, 1);
        bottom = block->y() + block->height();
    }
}

TEST(ScrollColumn, ScrollsByWheelAndBringsTheFocusIntoView) {
    UiDriver ui(
        u"import QtQuick\nimport TARNE.Styling\nScrollColumn { "
        "Repeater { model: 40; BorderedButton { required property int index; text: 'Row ' + "
        "index } } }"_s,
        QSize(300, 200));
    ui.wheel(QPointF(100, 100), -15);
    EXPECT_TRUE(ui.waitUntil([&] { return ui.root()->property("contentY").toReal() > 0; }));
    ui.root()->setProperty("contentY", 0);
    for (int row = 0; row < 20; ++row)
        ui.tab();
    QQuickItem *const focused = ui.view().activeFocusItem();
    EXPECT_EQ(ui.focusedName(), u"Row 19"_s);
    EXPECT_GE(focused->mapToScene(QPointF(0, 0)).y(), 0);
    EXPECT_LE(focused->mapToScene(QPointF(0, focused->height())).y(), 200);
}

TEST(ScrollColumn, IsScrolledByItsBarThatIsThereWheneverThereIsMore) {
    UiDriver ui(u"import QtQuick\nimport TARNE.Styling\nScrollColumn { id: view; "
                "property real rowHeight: 100; "
                "Rectangle { width: 100; height: view.rowHeight } "
                "Rectangle { width: 100; height: view.rowHeight } }"_s,
                QSize(300, 200));
    const auto *const bar = ui.root()->findChild<QQuickItem *>(u"scrollBar"_s);
    ASSERT_TRUE(bar);
    EXPECT_FALSE(bar->isVisible());
    ui.root()->setProperty("rowHeight", 200);
    EXPECT_FALSE(ui.picture().isNull());
    EXPECT_TRUE(bar->isVisible());
    EXPECT_EQ(bar->height(), 100);
    ui.press(QPointF(292, 40));
    ui.hover(QPointF(292, 70));
    EXPECT_EQ(ui.root()->property("contentY").toReal(), 60);
    ui.hover(QPointF(292, 199));
    EXPECT_EQ(ui.root()->property("contentY").toReal(), 200);
    ui.release(QPointF(292, 199));
    EXPECT_EQ(bar->y(), 100);
}

TEST(DisclosureSection, OpensAndClosesByItsWholeRow) {
    UiDriver ui(
        column(u"DisclosureSection { width: 300; symbol: 'heart.fill'; title: 'Motivation'; "
               "content: PlainText { text: 'Go on' } }"_s));
    EXPECT_FALSE(ui.has(u"Go on"_s));
    EXPECT_TRUE(ui.click(u"Motivation"_s, QAccessible::Button));
    EXPECT_TRUE(ui.waitUntil([&] { return ui.has(u"Go on"_s); }));
    EXPECT_TRUE(ui.click(u"Motivation"_s, QAccessible::Button));
    EXPECT_TRUE(ui.waitUntil([&] { return !ui.has(u"Go on"_s); }));
}

TEST(ProgressBar, TellsItsValueInWords) {
    const UiDriver ui(column(u"ProgressBar { value: 0.67; accessibleName: 'Tasks' }"_s));
    const QAccessibleInterface *const bar = ui.accessible(u"Tasks"_s);
    EXPECT_EQ(bar->role(), QAccessible::ProgressBar);
    EXPECT_EQ(bar->text(QAccessible::Description), u"67 %"_s);
}

TEST(Containers, ShowWhatTheyHold) {
    const UiDriver ui(
        column(u"Card { PlainText { text: 'in a card' } } "
               "TextInputBox { width: 200; height: 50; PlainText { text: 'in a box' } } "
               "GroupBox { width: 200; title: 'About'; PlainText { text: 'in a group' } } "
               "Badge { text: 'Completed' } Separator { width: 50 } Spinner {}"_s));
    for (const QString &text : {u"in a card"_s, u"in a box"_s, u"in a group"_s, u"Completed"_s})
        EXPECT_TRUE(ui.has(text, QAccessible::StaticText)) << qPrintable(text);
    EXPECT_TRUE(ui.has(u"About"_s, QAccessible::Heading));
}

TEST(Card, UntouchedIsOfTheCardStyle) {
    const UiDriver ui(column(u"Card { objectName: 'card'; PlainText { text: 'in a card' } }"_s));
    const auto *card = ui.root()->findChild<QQuickItem *>(u"card"_s);
    EXPECT_EQ(card->property("padding"), 16.0);
    EXPECT_EQ(card->property("cornerRadius"), 8.0);
    EXPECT_EQ(card->property("color").value<QColor>(), TARNEStyle::Colors::background);
    EXPECT_EQ(card->property("shadowColor").value<QColor>(), TARNEStyle::Colors::shadow);
    EXPECT_EQ(card->property("shadowRadius"), 4.0);
    EXPECT_EQ(card->property("shadowOffset"), 2.0);
    EXPECT_EQ(card->property("outlineWidth"), 0.0);
}

TEST(TextInputBox, IsOfTheTextInputStyle) {
    const UiDriver ui(column(u"TextInputBox { objectName: 'box'; width: 200; height: 50 }"_s));
    const auto *box = ui.root()->findChild<QQuickItem *>(u"box"_s);
    EXPECT_EQ(box->property("padding"), 16.0);
    EXPECT_EQ(box->property("font").value<QFont>(), TARNEStyle::Typography::body());
    const auto *ground = box->property("background").value<QQuickItem *>();
    EXPECT_EQ(ground->property("radius"), 8.0);
    EXPECT_EQ(ground->property("color").value<QColor>(), TARNEStyle::Colors::background);
    const QQmlProperty outline(const_cast<QQuickItem *>(ground), u"border.color"_s);
    EXPECT_EQ(outline.read().value<QColor>(), TARNEStyle::Colors::border);
    EXPECT_EQ(QQmlProperty::read(ground, u"border.width"_s), 1.0);
}

TEST(SymbolIcon, ReportsAnUnknownName) {
    const ExpectedWarning warning(u"no outline for the symbol \"nothing.at.all\""_s);
    const UiDriver ui(column(u"SymbolIcon { symbol: 'nothing.at.all' }"_s));
}

TEST(SymbolIcon, IsDrawnInItsColour) {
    UiDriver ui(
        u"import QtQuick\nimport TARNE.Styling\nRectangle { SymbolIcon { symbol: 'stop.fill'; "
        "size: 64; color: '#ff0000' } }"_s);
    EXPECT_EQ(ui.picture().pixelColor(32, 32), QColor(255, 0, 0));
}

} // namespace
} // namespace tarne::test
