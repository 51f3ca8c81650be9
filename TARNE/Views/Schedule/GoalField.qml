pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The goal's text, 3 to 8 lines high, over a rule that is thick and indigo while it has the focus.
Item {
    id: field

    required property AddGoalSheet view

    // Whether it was written in, or its caret moved, or the focus has been elsewhere.
    property bool isUsed: false

    readonly property real ruleHeight: 2

    function heightOfLines(count: int): real {
        return Math.max(80, 2 * editor.verticalPadding + count * metrics.lineSpacing);
    }

    implicitHeight: editor.height + ruleHeight

    Connections {
        target: field.view

        function onIsGoalTextFocusedChanged(): void {
            // Not when it has just lost the focus by itself: it is to have it back with its sheet.
            if (field.view.isGoalTextFocused !== editor.isFocused)
                field.view.isGoalTextFocused ? editor.takeFocus() : editor.dropFocus();
        }
    }
    FontMetrics {
        id: metrics

        font: editor.font
    }
    TextEditor {
        id: editor

        x: 4
        width: parent.width - 2 * 4
        height: field.heightOfLines(Math.max(3, Math.min(lineCount, 8)))
        horizontalInset: 0
        verticalPadding: 16
        font: Typography.system(16)
        color: SchedulePalette.text
        selectionColor: Colors.withOpacity(SchedulePalette.accent, 0.3)
        placeholderText: "What do you want to focus on?"
        accessibleName: placeholderText
        text: field.view.goalText
        onTextEdited: text => field.view.goalText = text
        Component.onCompleted: cursorPosition = length
        onIsFocusedChanged: {
            field.view.isGoalTextFocused = isFocused;
            if (!isFocused)
                field.isUsed = true;
        }
        onPreeditTextChanged: field.isUsed = true
        onCursorPositionChanged: {
            if (isFocused)
                field.isUsed = true;
        }
    }
    Rectangle {
        anchors.top: editor.bottom
        width: parent.width
        height: editor.isFocused ? field.ruleHeight : 1
        color: editor.isFocused ? SchedulePalette.accent : Colors.hex("E1E5E9")

        Behavior on height {
            EaseInOut { time: 200 }
        }
        Behavior on color {
            EaseInOut { time: 200 }
        }
    }
}
