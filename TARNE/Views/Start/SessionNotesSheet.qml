pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The second sheet of a new session: its goal.
SheetPanel {
    id: sheet

    required property SessionNotesView view

    readonly property real editorHeight: 280
    // What is inside is a little higher than the panel with the padding of 32 that it asks for; it
    // is centred, so both ends give.
    readonly property real verticalPadding:
        Math.min(32, (ownHeight - head.titleHeight - 40 - editorHeight) / 2)

    focus: true
    ownWidth: 520
    ownHeight: 400
    hasDragIndicator: true
    accessibleName: head.title
    Component.onCompleted: editor.takeFocus()

    Connections {
        target: sheet.view

        function onFocusReleased(): void {
            // Only from what Tab reaches: were it taken from the panel as well, and then from what
            // is around that, no key would reach anything in the end.
            const item = sheet.Window.activeFocusItem;
            if (item?.activeFocusOnTab)
                item.focus = false;
        }
    }

    header: SheetHead {
        id: head

        margin: 40
        topPadding: sheet.verticalPadding
        bottomPadding: 40
        title: "Session Goal"
        font.family: Typography.heading(24).family
        font.pixelSize: Typography.heading(24).pixelSize
        font.letterSpacing: -0.3
        color: Colors.label
        closeButton.size: 22
        onClosed: sheet.view.close()
    }

    Item {
        x: 40
        width: sheet.width - 2 * 40
        height: sheet.editorHeight

        TextEditor {
            id: editor

            anchors.fill: parent
            font: Typography.system(17, Font.Light)
            color: Colors.label
            lineSpacing: 2
            accessibleName: head.title
            text: sheet.view.sessionGoal
            onTextEdited: text => sheet.view.sessionGoal = text
        }

        Row {
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 16
            spacing: 16

            CommandReturnHint {
                anchors.verticalCenter: parent.verticalCenter
            }
            CircleButton {
                symbol: "arrow.right"
                text: "Start session"
                isReady: !sheet.view.isGoalEmpty
                onClicked: sheet.view.startSession()
            }
        }
    }
}
