#include "ComposingInputMethod.h"
#include "ControlDocument.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

struct ButtonCase {
    const char *name;
    QString qml;
};

class Buttons : public testing::TestWithParam<ButtonCase> {
protected:
    [[nodiscard]] QString document() const {
        QString qml = GetParam().qml;
        return column(qml.replace(u"%"_s, u"onClicked: root.presses++;"_s));
    }
};

TEST_P(Buttons, ArePressedByThePointer) {
    UiDriver ui(document());
    EXPECT_TRUE(ui.click(u"Go"_s, QAccessible::Button));
    EXPECT_EQ(presses(ui), 1);
}

TEST_P(Buttons, AreReachedByTabAndPressedBySpace) {
    UiDriver ui(document());
    ui.tab();
    EXPECT_EQ(ui.focusedName(), u"Go"_s);
    ui.key(Qt::Key_Space);
    EXPECT_EQ(presses(ui), 1);
}

TEST_P(Buttons, ArePressedByReturnAndEnterOnceHoweverLongTheKeyIsHeld) {
    UiDriver ui(document());
    ui.tab();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        for (const bool isRepeated : {false, true, true}) {
            QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, {}, isRepeated);
            QCoreApplication::sendEvent(&ui.view(), &press);
        }
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
        QCoreApplication::sendEvent(&ui.view(), &release);
    }
    EXPECT_EQ(presses(ui), 2);
}

TEST_P(Buttons, ArePressedByAnAssistiveTool) {
    const UiDriver ui(document());
    QAccessibleActionInterface *const actions = ui.accessible(u"Go"_s)->actionInterface();
    ASSERT_NE(actions, nullptr);
    actions->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(presses(ui), 1);
}

TEST_P(Buttons, ShowThePointingHand) {
    UiDriver ui(document());
    EXPECT_EQ(ui.cursorOver(u"Go"_s), Qt::PointingHandCursor);
}

TEST_P(Buttons, AreNamedOnce) {
    const UiDriver ui(document());
    EXPECT_EQ(ui.names().count(u"Go"_s), 1);
}

INSTANTIATE_TEST_SUITE_P(
    Looks, Buttons,
    testing::Values(
        ButtonCase{"Primary", u"PrimaryButton { text: 'Go'; symbol: 'play.fill'; % }"_s},
        ButtonCase{"Secondary", u"SecondaryButton { text: 'Go'; trailingSymbol: 'link'; % }"_s},
        ButtonCase{"Bordered", u"BorderedButton { text: 'Go'; isSmall: true; % }"_s},
        ButtonCase{"Icon", u"IconButton { symbol: 'xmark'; accessibleLabel: 'Go'; % }"_s}),
    [](const auto &button) { return std::string(button.param.name); });

TEST(PrimaryButton, IsAtLeastAsWideAsAsked) {
    const UiDriver ui(column(u"PrimaryButton { text: 'Go'; minimumWidth: 140 }"_s));
    EXPECT_EQ(ui.find(u"Go"_s)->width(), 140);
}

TEST(PrimaryButton, PadsItsLabelBySixteenAndTen) {
    const UiDriver ui(column(u"PrimaryButton { text: 'Go'; label: Item { implicitWidth: 50; "
                             "implicitHeight: 20 } }"_s));
    EXPECT_EQ(ui.find(u"Go"_s)->size(), QSizeF(82, 40));
}

TEST(StyledButton, TakesItsLookByAConditionAtRunTime) {
    UiDriver ui(
        column(u"StyledButton { text: 'Go'; buttonStyle: root.presses % 2 ? "
               "ButtonStyles.primary : ButtonStyles.secondary; onClicked: root.presses++ }"_s));
    const QPoint inside(14, 20);
    EXPECT_EQ(ui.picture().pixelColor(inside), QColor(Qt::white));
    EXPECT_TRUE(ui.click(u"Go"_s));
    QQuickItem *const button = ui.find(u"Go"_s);
    EXPECT_TRUE(ui.waitUntil([&] { return button->property("wholeOpacity") == 1.0; }));
    EXPECT_EQ(ui.picture().pixelColor(inside), QColor(0, 0x7A, 0xFF));
}

TEST(DisabledButton, IsNotPressedAndKeepsTheArrow) {
    UiDriver ui(column(u"PrimaryButton { id: b; text: 'Set'; enabled: false; onClicked: "
                       "root.presses++ }"_s));
    ui.clickAt(QPointF(20, 20));
    EXPECT_EQ(presses(ui), 0);
    EXPECT_EQ(ui.view().cursor().shape(), Qt::ArrowCursor);
}

/// The buttons of every look, each of which notes what is written when it is pressed.
const QString buttonsBelowAField =
    u"TextEdit { id: field; Accessible.name: 'Field'; width: 100; height: 20 } "
    "StyledButton { text: 'R&D'; onClicked: root.typed = field.text } "
    "PlainButton { text: 'Q&A'; width: 40; height: 20; onClicked: root.typed = field.text } "
    "BorderedButton { text: 'Save & Go'; onClicked: root.typed = field.text } "_s;
const QStringList buttonNames{u"R&D"_s, u"Q&A"_s, u"Save & Go"_s};

TEST(Buttons, AnAmpersandInAButtonsTextBindsNoKey) {
    UiDriver ui(column(buttonsBelowAField));
    EXPECT_EQ(ui.names(QAccessible::Button), buttonNames);
    EXPECT_EQ(ui.mnemonics(), QString());
}

TEST(Buttons, WhatIsStillBeingComposedIsThereForTheHandlerOfAPress) {
    ComposingInputMethod inputMethod;
    UiDriver ui(column(buttonsBelowAField));
    ui.find(u"Field"_s)->forceActiveFocus();
    QString written;
    for (const QString &button : buttonNames) {
        inputMethod.compose(u"本"_s);
        ui.settle();
        EXPECT_TRUE(ui.click(button));
        written += u"本"_s;
        EXPECT_EQ(typed(ui), written) << qPrintable(button);
    }
}

TEST(Buttons, AKeyThatIsHeldPressesOnce) {
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
        UiDriver ui(column(u"BorderedButton { text: 'a'; onClicked: root.presses++ } "
                           "StyledButton { text: 'b'; onClicked: root.presses++ } "
                           "PlainButton { text: 'c'; width: 40; height: 20; "
                           "onClicked: root.presses++ }"_s));
        for (int button = 1; button <= 3; ++button) {
            ui.tab();
            ui.holdKey(key, 3);
            ui.releaseKey(key);
            EXPECT_EQ(presses(ui), button) << qPrintable(ui.focusedName());
        }
    }
}

} // namespace
} // namespace tarne::test
