#include "ComposingInputMethod.h"
#include "TARNEStyle.h"
#include "TestMain.h"
#include "UiDriver.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QQmlProperty>
#include <QQuickTextDocument>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextOption>

#include <gmock/gmock.h>

namespace tarne::test {
namespace {

using namespace Qt::StringLiterals;

/// A document with the given content in a column.
QString column(const QString &content) {
    return u"pragma ComponentBehavior: Bound\nimport QtQuick\nimport TARNE.Styling\nRectangle { "
           u"id: root; property int presses: 0; "
           "property string typed; Column { spacing: 10; "_s +
           content + u" } }"_s;
}

int presses(const UiDriver &ui) {
    return ui.root()->property("presses").toInt();
}
QString typed(const UiDriver &ui) {
    return ui.root()->property("typed").toString();
}

TEST(PlainText, IsAStaticTextNamedByItself) {
    const UiDriver ui(column(u"PlainText { text: 'Session Setup' }"_s));
    EXPECT_TRUE(ui.has(u"Session Setup"_s, QAccessible::StaticText));
}

TEST(PlainText, ShowsMarkupAsItStands) {
    const UiDriver ui(column(u"PlainText { text: '<b>bold</b> &amp; more' }"_s));
    EXPECT_TRUE(ui.has(u"<b>bold</b> &amp; more"_s));
    EXPECT_EQ(ui.find(u"<b>bold</b> &amp; more"_s)->property("textFormat").toInt(), Qt::PlainText);
}

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

TEST(TextField, IsNamedByItsPlaceholderAndTakesWhatIsTyped) {
    UiDriver ui(
        column(u"TextField { placeholderText: '5-180'; onTextEdited: root.typed = text }"_s));
    EXPECT_TRUE(ui.click(u"5-180"_s, QAccessible::EditableText));
    ui.type(u"90"_s);
    EXPECT_EQ(typed(ui), u"90"_s);
}

const QString secureField = u"SecureField { width: 300; placeholderText: 'Enter your key'; "
                            "onTextEdited: text => root.typed = text; "
                            "onVisibilityToggled: isValueVisible = !isValueVisible }"_s;

TEST(SecureField, IsAPasswordFieldThatNeverTellsItsValue) {
    UiDriver ui(column(secureField));
    EXPECT_TRUE(ui.click(u"Enter your key"_s));
    ui.type(u"sesame"_s);
    EXPECT_EQ(typed(ui), u"sesame"_s);
    QAccessibleInterface *const field = ui.accessible(u"Enter your key"_s);
    EXPECT_TRUE(field->state().passwordEdit);
    EXPECT_FALSE(field->text(QAccessible::Value).contains(u"sesame"_s));
    QAccessibleTextInterface *const text = field->textInterface();
    if (text) {
        EXPECT_FALSE(text->text(0, text->characterCount()).contains(u"sesame"_s));
    }
    QAccessibleValueInterface *const value = field->valueInterface();
    if (value) {
        EXPECT_FALSE(value->currentValue().toString().contains(u"sesame"_s));
    }
}

QStringList announcedTexts;

/// Keeps every text that is announced to assistive tools.
void recordAnnouncement(QAccessibleEvent *event) {
    if (event->type() == QAccessible::TextInserted)
        announcedTexts << static_cast<QAccessibleTextInsertEvent *>(event)->textInserted();
    else if (event->type() == QAccessible::TextUpdated)
        announcedTexts << static_cast<QAccessibleTextUpdateEvent *>(event)->textInserted();
    else if (event->type() == QAccessible::ValueChanged)
        announcedTexts << static_cast<QAccessibleValueChangeEvent *>(event)->value().toString();
}

TEST(SecureField, TakesAllOfALongKeyThatIsPasted) {
    UiDriver ui(column(secureField));
    EXPECT_TRUE(ui.click(u"Enter your key"_s, QAccessible::EditableText));
    const QString key(100'000, u'k');
    QGuiApplication::clipboard()->setText(key);
    ui.key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(typed(ui) == key);
    QGuiApplication::clipboard()->clear();
}

TEST(SecureField, TellsInputMethodsThatItHoldsASecretShownOrNot) {
    UiDriver ui(column(secureField));
    const auto hints = [&] {
        QInputMethodQueryEvent query(Qt::ImHints);
        QCoreApplication::sendEvent(ui.find(u"Enter your key"_s), &query);
        return Qt::InputMethodHints(query.value(Qt::ImHints).toInt());
    };
    const Qt::InputMethodHints secret =
        Qt::ImhSensitiveData | Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase;
    EXPECT_EQ(hints(), secret | Qt::ImhHiddenText);
    EXPECT_TRUE(ui.click(u"Show key"_s));
    EXPECT_EQ(hints(), secret);
}

TEST(SecureField, ItsDotsAndAKeyAreNotShaped) {
    UiDriver ui(column(secureField));
    const auto font = ui.find(u"Enter your key"_s)->property("font").value<QFont>();
    EXPECT_TRUE(font.styleStrategy() & QFont::PreferNoShaping) << "which takes seconds for 1 MB";
    EXPECT_EQ(font.family(), u"Inter"_s);
}

TEST(SecureField, AnnouncesNothingOfWhatIsTyped) {
    UiDriver ui(column(secureField));
    announcedTexts.clear();
    const auto former = QAccessible::installUpdateHandler(recordAnnouncement);
    EXPECT_TRUE(ui.click(u"Enter your key"_s));
    ui.type(u"x"_s);
    QAccessible::installUpdateHandler(former);
    EXPECT_THAT(announcedTexts, testing::Not(testing::Contains(u"x"_s)));
}

TEST(SecureField, ItsEyeIsCrossedOutWhileTheValueIsVisible) {
    UiDriver ui(column(secureField));
    EXPECT_EQ(ui.find(u"Show key"_s)->property("symbol"), u"eye"_s);
    EXPECT_TRUE(ui.click(u"Show key"_s));
    EXPECT_EQ(ui.find(u"Hide key"_s)->property("symbol"), u"eye.slash"_s);
}

TEST(SecureField, ItsEyeShowsAndHidesTheValueOnScreenOnly) {
    UiDriver ui(column(secureField));
    EXPECT_TRUE(ui.click(u"Enter your key"_s));
    ui.type(u"sesame"_s);
    QQuickItem *const field = ui.find(u"Enter your key"_s);
    EXPECT_EQ(field->property("displayText").toString(), u"••••••"_s);
    EXPECT_TRUE(ui.click(u"Show key"_s));
    EXPECT_EQ(field->property("displayText").toString(), u"sesame"_s);
    EXPECT_FALSE(
        ui.accessible(u"Enter your key"_s)->text(QAccessible::Value).contains(u"sesame"_s));
    EXPECT_TRUE(ui.click(u"Hide key"_s));
    EXPECT_EQ(field->property("displayText").toString(), u"••••••"_s);
}

TEST(TextField, TellsWhatAnInputMethodCommits) {
    ComposingInputMethod inputMethod;
    UiDriver ui(column(
        u"TextField { placeholderText: 'words'; onTextEdited: root.typed = text } "
        "SecureField { width: 300; placeholderText: 'key'; onTextEdited: text => root.typed = text }"_s));
    for (const QString &field : {u"words"_s, u"key"_s}) {
        EXPECT_TRUE(ui.click(field));
        inputMethod.compose(u"本"_s);
        inputMethod.commit();
        EXPECT_EQ(typed(ui), u"本"_s) << qPrintable(field);
        ui.root()->setProperty("typed", QString());
    }
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

const QString editor =
    u"TextEditor { width: 300; height: 60; accessibleName: 'Reflection'; lineSpacing: 3; "
    "onTextEdited: text => root.typed = text } "
    "BorderedButton { text: 'Next' }"_s;

TEST(TextEditor, TakesSeveralLines) {
    UiDriver ui(column(editor));
    EXPECT_TRUE(ui.click(u"Reflection"_s, QAccessible::EditableText));
    ui.type(u"one"_s);
    ui.key(Qt::Key_Return);
    ui.type(u"two"_s);
    EXPECT_EQ(typed(ui), u"one\ntwo"_s);
}

TEST(TextEditor, TabMovesTheFocusOn) {
    UiDriver ui(column(editor));
    EXPECT_TRUE(ui.click(u"Reflection"_s));
    ui.tab();
    EXPECT_EQ(ui.focusedName(), u"Next"_s);
    ui.backtab();
    EXPECT_EQ(ui.focusedName(), u"Reflection"_s);
    EXPECT_EQ(typed(ui), u""_s);
}

TEST(TextEditor, UndoTakesBackOneEditAtATime) {
    UiDriver ui(column(editor));
    EXPECT_TRUE(ui.click(u"Reflection"_s));
    ui.type(u"one"_s);
    ui.key(Qt::Key_Return);
    ui.key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(typed(ui), u"one"_s);
}

TEST(TextEditor, TellsNoBreakSpacesAndKeepsTheCaretWhenAnEditComesBack) {
    UiDriver ui(column(u"TextEditor { width: 300; height: 60; accessibleName: 'Notes'; "
                       "text: root.typed; onTextEdited: text => root.typed = text }"_s));
    EXPECT_TRUE(ui.click(u"Notes"_s, QAccessible::EditableText));
    ui.type(u"a\u00a0b"_s);
    EXPECT_EQ(typed(ui), u"a\u00a0b"_s);
    ui.key(Qt::Key_Left);
    ui.type(u"x"_s);
    ui.type(u"y"_s);
    EXPECT_EQ(typed(ui), u"a\u00a0xyb"_s);
    ui.root()->setProperty("typed", u"c\u00a0d"_s);
    ui.type(u"e"_s);
    EXPECT_EQ(typed(ui).size(), 4);
    EXPECT_TRUE(typed(ui).contains(u"c\u00a0d"_s));
}

TEST(TextEditor, TellsWhatIsWrittenIntoItWithoutTheFocus) {
    const UiDriver ui(column(editor));
    ui.accessible(u"Reflection"_s)->setText(QAccessible::Value, u"dictated"_s);
    EXPECT_EQ(ui.focusedName(), QString());
    EXPECT_EQ(typed(ui), u"dictated"_s);
}

TEST(TextEditor, TellsNothingOfTheTextThatItIsGiven) {
    UiDriver ui(column(u"TextEditor { width: 300; height: 60; accessibleName: 'Notes'; "
                       "lineSpacing: 3; text: root.typed; onTextEdited: root.presses++ }"_s));
    // A text that the editor holds in another form, since it knows one kind of line end.
    ui.root()->setProperty("typed", u"one\r\ntwo"_s);
    ui.root()->setProperty("typed", u"one\u2028two"_s);
    ui.settle();
    EXPECT_EQ(presses(ui), 0);
    EXPECT_TRUE(ui.click(u"Notes"_s));
    EXPECT_EQ(presses(ui), 0);
    ui.type(u"x"_s);
    EXPECT_GT(presses(ui), 0);
}

TEST(TextEditor, TellsWhatAnInputMethodCommits) {
    ComposingInputMethod inputMethod;
    UiDriver ui(column(editor));
    EXPECT_TRUE(ui.click(u"Reflection"_s));
    inputMethod.compose(u"本"_s);
    EXPECT_EQ(typed(ui), QString());
    inputMethod.commit();
    EXPECT_EQ(typed(ui), u"本"_s);
}

TEST(TextEditor, SetsManyLinesApartInOneEdit) {
    const UiDriver ui(column(u"TextEditor { width: 300; height: 60; accessibleName: 'Notes'; "
                             "lineSpacing: 3; text: root.typed }"_s));
    const auto *const source =
        ui.find(u"Notes"_s)->property("textDocument").value<QQuickTextDocument *>();
    const QTextDocument &document = *source->textDocument();
    int edits = 0;
    QObject::connect(&document, &QTextDocument::contentsChanged, source, [&] { ++edits; });
    ui.root()->setProperty("typed", u"line\n"_s.repeated(200));
    EXPECT_LE(edits, 4) << "each edit lays out what stands below it";
    EXPECT_EQ(document.blockCount(), 201);
    for (QTextBlock line = document.begin(); line.isValid(); line = line.next())
        EXPECT_EQ(line.blockFormat().lineHeight(), 3) << line.blockNumber();
}

/// Pastes what is on the clipboard into the editor.
QQuickItem *editorAfterPasting(UiDriver &ui, const QString &text) {
    EXPECT_TRUE(ui.click(u"Reflection"_s, QAccessible::EditableText));
    QGuiApplication::clipboard()->setText(text);
    ui.key(Qt::Key_A, Qt::ControlModifier);
    ui.key(Qt::Key_V, Qt::ControlModifier);
    QGuiApplication::clipboard()->clear();
    return ui.find(u"Reflection"_s);
}

bool isShaped(const QQuickItem &edit) {
    const auto *const source = edit.property("textDocument").value<QQuickTextDocument *>();
    return (source->textDocument()->defaultFont().styleStrategy() & QFont::PreferNoShaping) == 0;
}

TEST(TextEditor, TakesALongTextWholeAndDoesWithoutKerningForAsLongAsItIsLong) {
    UiDriver ui(column(editor));
    for (const QString &text :
         {u"Some words on a line.\n"_s.repeated(5000), u"x"_s.repeated(100'000),
          u"Words and no end of a line. "_s.repeated(4000)}) {
        const QQuickItem &edit = *editorAfterPasting(ui, text);
        EXPECT_TRUE(typed(ui) == text);
        EXPECT_FALSE(isShaped(edit));
    }
    EXPECT_TRUE(isShaped(*editorAfterPasting(ui, u"Short again."_s)));
    EXPECT_EQ(typed(ui), u"Short again."_s);
}

TEST(TextEditor, LooksForTheEndOfNoEndlessWord) {
    UiDriver ui(column(editor));
    const auto wrapModeAfterPasting = [&](const QString &text) {
        return editorAfterPasting(ui, text)->property("wrapMode").toInt();
    };
    EXPECT_EQ(wrapModeAfterPasting(u"Some words. "_s.repeated(9000)),
              QTextOption::WrapAtWordBoundaryOrAnywhere);
    EXPECT_EQ(wrapModeAfterPasting(u"x"_s.repeated(100'000)), QTextOption::WrapAnywhere)
        << "which takes half a minute for 1 MB";
    EXPECT_EQ(wrapModeAfterPasting(u"Short again."_s), QTextOption::WrapAtWordBoundaryOrAnywhere);
}

TEST(TextEditor, EveryLineBreakThatIsPastedBecomesALineFeed) {
    UiDriver ui(column(editor));
    editorAfterPasting(ui, u"a\r\nb\rc\u2028d\u2029e"_s);
    EXPECT_EQ(typed(ui), u"a\nb\nc\nd\ne"_s);
}

TEST(TextEditor, PastedMarkupStaysPlain) {
    UiDriver ui(column(
        u"TextEditor { width: 300; height: 60; accessibleName: 'Notes'; text: '<b>x</b>' }"_s));
    EXPECT_EQ(ui.find(u"Notes"_s)->property("text").toString(), u"<b>x</b>"_s);
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
