pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// Several lines of text, which scroll when they do not fit. Tab moves the focus on, as everywhere
// else. It has no ground of its own.
Flickable {
    id: editor

    required property string accessibleName
    property string text
    property alias font: edit.font
    property alias color: edit.color
    property alias readOnly: edit.readOnly
    property real lineSpacing: 0
    property real horizontalInset: 5
    property real verticalInset: 0
    readonly property bool isFocused: edit.activeFocus

    // The text was changed by the user.
    signal textEdited(string text)

    function takeFocus(): void {
        edit.forceActiveFocus();
    }

    function reveal(rectangle: rect): void {
        if (rectangle.y < contentY)
            contentY = rectangle.y;
        else if (rectangle.y + rectangle.height + 2 * verticalInset > contentY + height)
            contentY = rectangle.y + rectangle.height + 2 * verticalInset - height;
    }

    onTextChanged: {
        // What comes back of an edit is there already, and is not to move the caret.
        if (text === editorDocument.text())
            return;
        editorDocument.isFilling = true;
        edit.text = text;
        editorDocument.isFilling = false;
    }

    implicitHeight: edit.contentHeight + 2 * verticalInset
    clip: true
    contentWidth: width
    contentHeight: Math.max(height, edit.contentHeight + 2 * verticalInset)
    boundsBehavior: Flickable.StopAtBounds
    interactive: contentHeight > height

    TextEdit {
        id: edit

        x: editor.horizontalInset
        y: editor.verticalInset
        width: editor.width - 2 * editor.horizontalInset
        height: editor.contentHeight - 2 * editor.verticalInset
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
    }
    EditorDocument {
        id: editorDocument

        document: edit.textDocument
        spacing: editor.lineSpacing
        onEdited: editor.textEdited(editorDocument.text())
    }
}
