pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The goal's text, 3 to 8 lines high, over a rule that is thick and indigo while it has the focus.
Item {
    id: field

    required property AddGoalSheet view

    readonly property bool isFocused: editor.activeFocus
    // Whether it was written in, or its caret moved, or the focus has been elsewhere.
    property bool isUsed: false

    readonly property real verticalPadding: 16
    readonly property real ruleHeight: 2

    function heightOfLines(count: int): real {
        return Math.max(80, 2 * field.verticalPadding + count * metrics.lineSpacing);
    }

    implicitHeight: box.height + ruleHeight

    Connections {
        target: field.view

        function onIsGoalTextFocusedChanged(): void {
            // Not when it has just lost the focus by itself: it is to have it back with its sheet.
            if (field.view.isGoalTextFocused !== editor.activeFocus)
                field.view.isGoalTextFocused ? editor.forceActiveFocus() : editor.focus = false;
        }
        function onGoalTextChanged(): void {
            // What comes back of an edit is there already, and is not to move the caret.
            if (typed.text() !== field.view.goalText)
                editor.text = field.view.goalText;
        }
    }
    EditorDocument {
        id: typed

        document: editor.textDocument
    }
    FontMetrics {
        id: metrics

        font: editor.font
    }
    Flickable {
        id: box

        x: 4
        width: parent.width - 2 * 4
        height: field.heightOfLines(Math.max(3, Math.min(editor.lineCount, 8)))
        contentHeight: editor.height
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentHeight > height

        function reveal(rectangle: rect): void {
            if (rectangle.y < contentY + field.verticalPadding)
                contentY = Math.max(0, rectangle.y - field.verticalPadding);
            else if (rectangle.y + rectangle.height + field.verticalPadding > contentY + height)
                contentY = rectangle.y + rectangle.height + field.verticalPadding - height;
        }

        TextEdit {
            id: editor

            width: box.width
            height: Math.max(implicitHeight, field.heightOfLines(3))
            topPadding: field.verticalPadding
            bottomPadding: field.verticalPadding
            activeFocusOnTab: true
            font: Typography.system(16)
            color: SchedulePalette.text
            selectionColor: Colors.withOpacity(SchedulePalette.accent, 0.3)
            selectedTextColor: color
            selectByMouse: true
            textFormat: TextEdit.PlainText
            wrapMode: typed.hasEndlessWord ? TextEdit.WrapAnywhere : TextEdit.Wrap
            Accessible.role: Accessible.EditableText
            Accessible.multiLine: true
            Accessible.name: prompt.text

            Component.onCompleted: {
                text = field.view.goalText;
                cursorPosition = length;
            }
            onTextChanged: field.view.goalText = typed.text()
            onActiveFocusChanged: {
                field.view.isGoalTextFocused = activeFocus;
                if (!activeFocus)
                    field.isUsed = true;
            }
            onPreeditTextChanged: field.isUsed = true
            onCursorPositionChanged: {
                if (activeFocus)
                    field.isUsed = true;
            }
            onCursorRectangleChanged: box.reveal(cursorRectangle)
            Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
            Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)

            HoverHandler {
                cursorShape: Qt.IBeamCursor
            }
            Text {
                id: prompt

                y: field.verticalPadding
                visible: editor.length === 0 && editor.preeditText.length === 0
                text: "What do you want to focus on?"
                font: editor.font
                color: Colors.tertiaryLabel
                textFormat: Text.PlainText
                Accessible.ignored: true
            }
        }
    }
    Rectangle {
        anchors.top: box.bottom
        width: parent.width
        height: field.isFocused ? field.ruleHeight : 1
        color: field.isFocused ? SchedulePalette.accent : Colors.hex("E1E5E9")

        Behavior on height {
            EaseInOut { duration: 200 }
        }
        Behavior on color {
            EaseInOut { duration: 200 }
        }
    }
}
