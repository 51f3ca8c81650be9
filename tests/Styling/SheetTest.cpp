#include "UiDriver.h"

#include <QFile>
#include <QGuiApplication>
#include <QPointer>
#include <QStyleHints>
#include <QTemporaryDir>
#include <QTest>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

/// A page with a sheet, and in that sheet another one.
const QString page = uR"(
pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
Rectangle {
    id: root
    property bool lower: false
    property bool upper: false
    property int presses: 0
    Column {
        BorderedButton { text: "Open"; onClicked: root.lower = true }
        BorderedButton { text: "Behind"; onClicked: root.presses++ }
        PlainText { text: "page" }
    }
    Sheet {
        isPresented: root.lower
        content: SheetPanel {
            width: 400
            accessibleName: "Lower"
            header: Item {
                width: 400
                implicitHeight: 60
                IconButton { symbol: "xmark.circle.fill"; accessibleLabel: "Close"; onClicked: root.lower = false }
            }
            BorderedButton { text: "Further"; onClicked: root.upper = true }
            TextField { placeholderText: "words" }
            Sheet {
                isPresented: root.upper
                content: SheetPanel {
                    width: 300
                    ownHeight: 900
                    accessibleName: "Upper"
                    BorderedButton { text: "Back"; onClicked: root.upper = false }
                    BorderedButton { text: "End"; onClicked: { root.lower = false; root.upper = false } }
                    Repeater { model: 100; PlainText { required property int index; text: "line " + index } }
                }
            }
        }
    }
}
)"_s;

class SheetTest : public testing::Test {
protected:
    void open() { ASSERT_TRUE(ui.click(u"Open"_s)); }
    void openBoth() {
        open();
        ASSERT_TRUE(ui.click(u"Further"_s));
    }
    int presses() { return ui.root()->property("presses").toInt(); }

    UiDriver ui{page, QSize(800, 600)};
};

TEST_F(SheetTest, ShowsItsContentWhilePresented) {
    EXPECT_FALSE(ui.has(u"Lower"_s));
    open();
    EXPECT_TRUE(ui.has(u"Lower"_s, QAccessible::Dialog));
    EXPECT_TRUE(ui.click(u"Close"_s));
    EXPECT_FALSE(ui.has(u"Lower"_s));
}

TEST_F(SheetTest, WhatLiesBehindIsOutOfTheAccessibleTree) {
    open();
    EXPECT_FALSE(ui.has(u"Behind"_s));
    EXPECT_FALSE(ui.has(u"page"_s));
    EXPECT_TRUE(ui.click(u"Close"_s));
    EXPECT_TRUE(ui.has(u"Behind"_s));
}

TEST_F(SheetTest, WhatLiesBehindIsOutOfThePointersReach) {
    const QQuickItem *const behind = ui.find(u"Behind"_s);
    const QPointF position = behind->mapToScene(QPointF(5, 5));
    open();
    ui.clickAt(position);
    EXPECT_EQ(presses(), 0);
    EXPECT_TRUE(ui.has(u"Lower"_s));
    EXPECT_EQ(ui.view().cursor().shape(), Qt::ArrowCursor);
}

TEST_F(SheetTest, TabStaysInside) {
    open();
    QStringList reached;
    for (int step = 0; step < 6; ++step) {
        ui.tab();
        reached.append(ui.focusedName());
    }
    EXPECT_THAT(reached, testing::Not(testing::Contains(u"Behind"_s)));
    EXPECT_THAT(reached, testing::IsSupersetOf({u"Close"_s, u"Further"_s, u"words"_s}));
}

TEST_F(SheetTest, EscapeAndControlReturnDoNothing) {
    open();
    ui.key(Qt::Key_Escape);
    ui.key(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(ui.has(u"Lower"_s));
    ui.tab();
    ui.key(Qt::Key_Escape);
    EXPECT_TRUE(ui.has(u"Lower"_s));
}

TEST_F(SheetTest, TheFocusReturnsToWhereItWas) {
    ui.tab();
    EXPECT_EQ(ui.focusedName(), u"Open"_s);
    ui.key(Qt::Key_Space);
    ui.tab();
    EXPECT_NE(ui.focusedName(), u"Open"_s);
    EXPECT_TRUE(ui.click(u"Close"_s));
    EXPECT_EQ(ui.focusedName(), u"Open"_s);
}

TEST_F(SheetTest, SheetsStackAndTheLowerOneComesBackIntact) {
    open();
    EXPECT_TRUE(ui.click(u"words"_s));
    ui.type(u"kept"_s);
    EXPECT_TRUE(ui.click(u"Further"_s));
    EXPECT_TRUE(ui.has(u"Upper"_s));
    EXPECT_FALSE(ui.has(u"Further"_s));
    EXPECT_TRUE(ui.click(u"Back"_s));
    EXPECT_FALSE(ui.has(u"Upper"_s));
    EXPECT_TRUE(ui.has(u"Lower"_s));
    EXPECT_EQ(ui.find(u"words"_s)->property("text").toString(), u"kept"_s);
}

TEST_F(SheetTest, BothSheetsCanCloseAtOnce) {
    openBoth();
    EXPECT_TRUE(ui.click(u"End"_s));
    EXPECT_TRUE(ui.waitUntil([&] { return ui.has(u"Behind"_s); }));
    EXPECT_FALSE(ui.has(u"Lower"_s));
    EXPECT_TRUE(ui.click(u"Behind"_s));
    EXPECT_EQ(presses(), 1);
}

TEST_F(SheetTest, IsNeverHigherThanTheWindowLess32AndItsBodyScrolls) {
    openBoth();
    EXPECT_EQ(ui.find(u"Upper"_s)->height(), 568);
    const QQuickItem *const back = ui.find(u"Back"_s);
    const double before = back->mapToScene(QPointF()).y();
    ui.wheel(QPointF(400, 300), -30);
    EXPECT_TRUE(ui.waitUntil([&] { return back->mapToScene(QPointF()).y() < before; }));
}

TEST_F(SheetTest, FollowsTheWindowsHeight) {
    openBoth();
    ui.view().resize(800, 1000);
    EXPECT_TRUE(ui.waitUntil([&] { return ui.find(u"Upper"_s)->height() == 900; }));
}

/// A page over which a sheet comes by itself, with a button in the middle that has the focus.
const QString pageUnderADueSheet = uR"(
pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
Rectangle {
    id: root
    property bool isUp: false
    property int presses: 0
    property int behind: 0
    BorderedButton { anchors.centerIn: parent; text: "Behind"; focus: true; onClicked: root.behind++ }
    Sheet {
        isPresented: root.isUp
        content: FocusScope {
            width: 200
            height: 200
            BorderedButton { anchors.centerIn: parent; text: "Above"; focus: true; onClicked: root.presses++ }
        }
    }
}
)"_s;

class DueSheetTest : public testing::Test {
protected:
    void show(bool isUp) {
        ui.root()->setProperty("isUp", isUp);
        ui.settle();
    }
    int above() { return ui.root()->property("presses").toInt(); }
    int behind() { return ui.root()->property("behind").toInt(); }

    UiDriver ui{pageUnderADueSheet, QSize(800, 600)};
    const QPointF middle{400, 300};
};

TEST_F(DueSheetTest, AButtonThatIsStillHeldPressesNothingInIt) {
    // What loses the focus is held no more.
    ui.find(u"Behind"_s)->setFocus(false);
    ui.press(middle);
    show(true);
    ui.release(middle);
    EXPECT_EQ(above(), 0);
    ui.clickAt(middle);
    EXPECT_EQ(above(), 1);
    EXPECT_EQ(behind(), 0);
}

TEST_F(DueSheetTest, AKeyThatIsStillHeldPressesNothingInItAndNothingBehindIt) {
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
        const int behindBefore = behind();
        const int aboveBefore = above();
        ui.holdKey(key, 0);
        const int pressed = behind() - behindBefore; // Return presses at once.
        show(true);
        ASSERT_EQ(ui.focusedName(), u"Above"_s);
        ui.releaseKey(key);
        EXPECT_EQ(above(), aboveBefore);
        ui.key(key);
        EXPECT_EQ(above(), aboveBefore + 1) << "a press of its own counts";
        ui.holdKey(key, 0);
        const int aboveHeld = above();
        show(false);
        ASSERT_EQ(ui.focusedName(), u"Behind"_s);
        ui.releaseKey(key);
        EXPECT_EQ(behind() - behindBefore, pressed);
        EXPECT_EQ(above(), aboveHeld);
    }
}

TEST_F(DueSheetTest, ASecondClickAcrossItsComingPressesNothingInIt) {
    ui.clickAt(middle);
    show(true);
    ui.clickAgainAt(middle);
    EXPECT_EQ(above(), 0);
    EXPECT_FALSE(ui.find(u"Above"_s)->property("down").toBool());
    ui.clickAt(middle);
    EXPECT_EQ(above(), 1);
}

TEST_F(DueSheetTest, ASecondClickBeyondTheDoubleClickDistanceCountsAtOnce) {
    ui.clickAt(middle);
    show(true);
    ui.clickAgainAt(middle +
                    QPointF(QGuiApplication::styleHints()->mouseDoubleClickDistance() + 1, 0));
    EXPECT_EQ(above(), 1);
}

TEST_F(DueSheetTest, AnotherMouseButtonsPressIsNoPartOfTheClick) {
    QTest::mouseClick(&ui.view(), Qt::RightButton, {}, middle.toPoint());
    show(true);
    ui.clickAgainAt(middle);
    EXPECT_EQ(above(), 1);
}

TEST_F(DueSheetTest, ASecondTapAcrossItsComingPressesNothingInIt) {
    static QPointingDevice *const screen = QTest::createTouchDevice();
    const auto tap = [&] {
        QTest::touchEvent(&ui.view(), screen).press(0, middle.toPoint());
        QTest::touchEvent(&ui.view(), screen).release(0, middle.toPoint());
        ui.settle();
    };
    tap();
    ASSERT_EQ(behind(), 1);
    show(true);
    tap();
    EXPECT_EQ(above(), 0);
}

/// The same with an editor on both sides.
const QString editorUnderADueSheet = uR"(
pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
Rectangle {
    id: root
    property bool isUp: false
    property string behind
    property string above
    TextEditor {
        width: 200; height: 200; focus: true; accessibleName: "Behind"
        onTextEdited: text => root.behind = text
        Component.onCompleted: takeFocus()
    }
    Sheet {
        isPresented: root.isUp
        content: FocusScope {
            width: 200
            height: 200
            TextEditor {
                anchors.fill: parent; accessibleName: "Above"
                onTextEdited: text => root.above = text
                Component.onCompleted: takeFocus()
            }
        }
    }
}
)"_s;

TEST(DueSheet, AKeyThatIsStillHeldWritesNothingInItAndNothingBehindIt) {
    UiDriver ui(editorUnderADueSheet, QSize(800, 600));
    const auto show = [&](bool isUp) {
        ui.root()->setProperty("isUp", isUp);
        ui.settle();
        ASSERT_EQ(ui.focusedName(), isUp ? u"Above"_s : u"Behind"_s);
    };
    const auto written = [&](const char *side) { return ui.root()->property(side).toString(); };
    ui.holdKey(Qt::Key_Space, 1);
    ASSERT_EQ(written("behind"), u"  "_s);
    show(true);
    ui.repeatKey(Qt::Key_Space, 2);
    ui.releaseKey(Qt::Key_Space);
    EXPECT_EQ(written("above"), QString());
    ui.holdKey(Qt::Key_Space, 1);
    EXPECT_EQ(written("above"), u"  "_s) << "a press of its own counts";
    show(false);
    ui.repeatKey(Qt::Key_Space, 2);
    ui.releaseKey(Qt::Key_Space);
    EXPECT_EQ(written("behind"), u"  "_s);
    EXPECT_EQ(written("above"), u"  "_s);
}

TEST(ComponentSlot, EndsWhatItHoldsTogetherWithItself) {
    const UiDriver ui(
        u"import QtQuick\nimport TARNE.Styling\nItem { ComponentSlot { isActive: true; "
        "component: Component { Rectangle {} } } }"_s);
    const QQuickItem *const slot = ui.root()->childItems().constFirst();
    const QPointer<QQuickItem> held = slot->property("item").value<QQuickItem *>();
    ASSERT_TRUE(held);
    delete slot;
    EXPECT_FALSE(held) << "later, its engine may be gone";
}

TEST(ComponentSlot, LoadsADocumentWhenItsItemIsFirstWanted) {
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"Late.qml"_s);
    const UiDriver ui(
        u"import QtQuick\nimport TARNE.Styling\nItem { ComponentSlot { isActive: true; "
        "document: 'file://%1' } }"_s.arg(file));
    QQuickItem *const slot = ui.root()->childItems().constFirst();
    EXPECT_FALSE(slot->property("item").value<QQuickItem *>());
    // It is not looked at before: it is not even there.
    QFile document(file);
    ASSERT_TRUE(document.open(QIODevice::WriteOnly));
    document.write("import QtQuick\nItem { required property QtObject view }");
    document.close();
    QObject view;
    QObject other;
    slot->setProperty("view", QVariant::fromValue(&view));
    const QPointer<QQuickItem> item = slot->property("item").value<QQuickItem *>();
    ASSERT_TRUE(item);
    EXPECT_EQ(item->property("view").value<QObject *>(), &view);
    slot->setProperty("view", QVariant::fromValue(&other));
    EXPECT_EQ(slot->property("item").value<QQuickItem *>(), item) << "it is made once";
    EXPECT_EQ(item->property("view").value<QObject *>(), &other);
    slot->setProperty("view", QVariant::fromValue<QObject *>(nullptr));
    EXPECT_FALSE(slot->property("item").value<QQuickItem *>());
}

TEST(SheetPanel, IsAsHighAsWhatItHoldsUnlessToldOtherwise) {
    const UiDriver ui(u"import QtQuick\nimport TARNE.Styling\nItem { SheetPanel { accessibleName: "
                      u"'Panel'; width: 300; "
                      "header: Item { implicitHeight: 50 } footer: Item { implicitHeight: 30 } "
                      "Item { width: 10; height: "
                      "100 } } }"_s);
    EXPECT_EQ(ui.find(u"Panel"_s)->height(), 180);
}

const QString alertPage = uR"(
pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
Rectangle {
    id: root
    property int accepted: 0
    property int dismissed: 0
    property bool showing: true
    BorderedButton { text: "Behind" }
    Alert {
        isPresented: root.showing
        title: "Setup Complete"
        message: "Ready"
        buttonText: "Start"
        otherButtonText: "Later"
        onAccepted: { root.accepted++; root.showing = false }
        onDismissed: { root.dismissed++; root.showing = false }
    }
}
)"_s;

TEST(Alert, ShowsTitleMessageAndButtonsAboveEverything) {
    const UiDriver ui(alertPage);
    EXPECT_TRUE(ui.has(u"Setup Complete"_s, QAccessible::StaticText));
    EXPECT_TRUE(ui.has(u"Ready"_s, QAccessible::StaticText));
    EXPECT_FALSE(ui.has(u"Behind"_s));
}

TEST(Alert, ReturnPressesTheDefaultButton) {
    UiDriver ui(alertPage);
    ui.key(Qt::Key_Return);
    EXPECT_EQ(ui.root()->property("accepted").toInt(), 1);
    EXPECT_TRUE(ui.has(u"Behind"_s));
}

TEST(Alert, ReturnPressesTheOtherButtonOnceTabHasReachedIt) {
    UiDriver ui(alertPage);
    ui.tab();
    ASSERT_EQ(ui.focusedName(), u"Later"_s);
    ui.key(Qt::Key_Return);
    EXPECT_EQ(ui.root()->property("dismissed").toInt(), 1);
    EXPECT_EQ(ui.root()->property("accepted").toInt(), 0);
}

TEST(Alert, EscapeLeavesItUp) {
    UiDriver ui(alertPage);
    ui.key(Qt::Key_Escape);
    EXPECT_TRUE(ui.has(u"Ready"_s));
}

TEST(Alert, TheOtherButtonDismissesIt) {
    UiDriver ui(alertPage);
    EXPECT_TRUE(ui.click(u"Later"_s));
    EXPECT_EQ(ui.root()->property("dismissed").toInt(), 1);
    EXPECT_EQ(ui.root()->property("accepted").toInt(), 0);
}

} // namespace
} // namespace tarne::test
