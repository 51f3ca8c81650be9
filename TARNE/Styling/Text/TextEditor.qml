pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// Several lines of text, which scroll when they do not fit. Tab moves the focus on, as everywhere
// else. It has no ground of its own.
Flickable {
    id: editor

    required property string accessibleName
    property string text
    property string placeholderText
    property alias font: edit.font
    property alias color: edit.color
    property alias selectionColor: edit.selectionColor
    property alias readOnly: edit.readOnly
    property alias cursorPosition: edit.cursorPosition
    property alias preeditText: edit.preeditText
    readonly property alias length: edit.length
    readonly property alias lineCount: edit.lineCount
    property real lineSpacing: 0
    property real horizontalInset: 5
    property real verticalInset: 0
    // Room above and below the text in which a press still meets the field.
    property real verticalPadding: 0
    readonly property real textHeight: edit.contentHeight + 2 * (verticalInset + verticalPadding)
    readonly property bool isFocused: edit.activeFocus

    // The text was changed by the user.
    signal textEdited(string text)

    function takeFocus(): void {
        edit.forceActiveFocus();
    }

    function dropFocus(): void {
        edit.focus = false;
    }

    // With the room above and below it.
    function reveal(rectangle: rect): void {
        const top = rectangle.y - verticalPadding;
        const bottom = rectangle.y + rectangle.height + verticalPadding + 2 * verticalInset;
        if (top < contentY)
            contentY = Math.max(0, top);
        else if (bottom > contentY + height)
            contentY = bottom - height;
    }

    onTextChanged: {
        // What comes back of an edit is there already, and is not to move the caret.
        if (text === editorDocument.text())
            return;
        editorDocument.isFilling = true;
        edit.text = text;
        editorDocument.isFilling = false;
    }

    implicitHeight: textHeight
    clip: true
    contentWidth: width
    contentHeight: Math.max(height, textHeight)
    boundsBehavior: Flickable.StopAtBounds
    interactive: contentHeight > height

    TextEdit {
        id: edit

        x: editor.horizontalInset
        y: editor.verticalInset
        width: editorDocument.textWidth
        height: editor.contentHeight - 2 * editor.verticalInset
        topPadding: editor.verticalPadding
        bottomPadding: editor.verticalPadding
        activeFocusOnTab: true
        font: Typography.body
        color: Colors.primaryText
        selectionColor: Colors.withOpacity(Colors.accent, 0.3)
        selectedTextColor: color
        selectByMouse: true
        textFormat: TextEdit.PlainText
        wrapMode: editorDocument.hasEndlessWord ? TextEdit.WrapAnywhere : TextEdit.Wrap
        Accessible.role: Accessible.EditableText
        Accessible.multiLine: true
        Accessible.name: editor.accessibleName

        Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
        Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
        onCursorRectangleChanged: editor.reveal(cursorRectangle)

        HoverHandler {
            cursorShape: Qt.IBeamCursor
        }
        ControlText {
            y: editor.verticalPadding
            visible: edit.length === 0 && edit.preeditText.length === 0
            text: editor.placeholderText
            font: edit.font
            color: Colors.tertiaryLabel
        }
    }
    EditorDocument {
        id: editorDocument

        document: edit.textDocument
        spacing: editor.lineSpacing
        textWidth: editor.width - 2 * editor.horizontalInset
        onEdited: editor.textEdited(editorDocument.text())
    }
}
