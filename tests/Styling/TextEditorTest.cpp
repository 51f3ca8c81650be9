#include "ComposingInputMethod.h"
#include "ControlDocument.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QQuickTextDocument>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextOption>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

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
    // There is nothing else to go back to.
    ui.backtab();
    EXPECT_EQ(ui.focusedName(), u"Next"_s);
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

TEST(TextEditor, LaysOutATextThatIsTallerThanTheTallestPageOfQt) {
    UiDriver ui(column(u"TextEditor { width: 300; height: 60; accessibleName: 'Notes'; "
                       "font.pixelSize: 2000; text: root.typed }"_s));
    const QQuickItem &edit = *ui.find(u"Notes"_s);
    const auto textHeight = [&] { return edit.property("contentHeight").toDouble(); };
    ui.root()->setProperty("typed", u"a\n"_s.repeated(5000));
    EXPECT_GT(textHeight(), 10'000'000);
    // And again at another width, of the editor and then of its text alone.
    QQuickItem &control = *edit.parentItem()->parentItem();
    control.setWidth(400);
    EXPECT_EQ(edit.width(), 390);
    control.setProperty("horizontalInset", 50);
    EXPECT_EQ(edit.width(), 300);
    EXPECT_GT(textHeight(), 10'000'000);
}

TEST(TextEditor, BreaksItsLinesAtItsWidthAlsoWhenThatChanges) {
    UiDriver ui(column(u"TextEditor { width: 300; height: 60; accessibleName: 'Reflection'; "
                       "text: 'Some words that do not fit on one line of 300 points' }"_s));
    const QQuickItem &edit = *ui.find(u"Reflection"_s);
    EXPECT_EQ(edit.property("lineCount").toInt(), 2);
    edit.parentItem()->parentItem()->setWidth(600);
    ui.settle();
    EXPECT_EQ(edit.property("lineCount").toInt(), 1);
}

TEST(TextEditor, EveryLineBreakThatIsPastedBecomesALineFeed) {
    UiDriver ui(column(editor));
    editorAfterPasting(ui, u"a\r\nb\rc\u2028d\u2029e"_s);
    EXPECT_EQ(typed(ui), u"a\nb\nc\nd\ne"_s);
}

TEST(TextEditor, MarkupThatItIsGivenStaysPlain) {
    UiDriver ui(column(
        u"TextEditor { width: 300; height: 60; accessibleName: 'Notes'; text: '<b>x</b>' }"_s));
    EXPECT_EQ(ui.find(u"Notes"_s)->property("text").toString(), u"<b>x</b>"_s);
}

TEST(TextEditor, OfAPastedPageTheWordsAloneAreTaken) {
    UiDriver ui(column(editor));
    EXPECT_TRUE(ui.click(u"Reflection"_s, QAccessible::EditableText));
    auto page = std::make_unique<QMimeData>();
    page->setHtml(u"<b>Bold</b> words"_s);
    page->setText(u"<b>x</b> Bold words"_s);
    QGuiApplication::clipboard()->setMimeData(page.release());
    ui.key(Qt::Key_V, Qt::ControlModifier);
    QGuiApplication::clipboard()->clear();
    EXPECT_EQ(typed(ui), u"<b>x</b> Bold words"_s);
    const auto *const source =
        ui.find(u"Reflection"_s)->property("textDocument").value<QQuickTextDocument *>();
    for (const QTextLayout::FormatRange &range : source->textDocument()->begin().textFormats())
        EXPECT_FALSE(range.format.hasProperty(QTextFormat::FontWeight));
}

} // namespace
} // namespace tarne::test
