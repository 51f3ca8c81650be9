pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// A goal of the schedule: its time, and a card with tick, text and trash button. That a reminder is
// set is said of every goal. It runs from left to right in every script, as the whole screen does.
// Its tick has the focus that the list gives to the row.
FocusScope {
    id: row

    required property int index
    required property string goal
    required property string timeText
    required property bool isCompleted

    readonly property bool isFocused: tick.activeFocus || trash.activeFocus

    signal toggled
    signal deleted

    implicitHeight: card.height + 2 * 6

    Column {
        id: time

        x: 24
        anchors.verticalCenter: parent.verticalCenter
        width: Typography.grown(80)
        spacing: 2

        PlainText {
            width: parent.width
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            text: row.timeText
            font: Typography.system(14, Font.Medium)
            color: SchedulePalette.text
        }
        PlainText {
            text: "1h before"
            font: Typography.system(12)
            color: SchedulePalette.secondaryText
        }
    }
    Rectangle {
        id: card

        anchors.left: time.right
        anchors.leftMargin: 16
        anchors.right: parent.right
        anchors.rightMargin: 24
        anchors.verticalCenter: parent.verticalCenter
        height: Math.max(texts.implicitHeight, 32) + 2 * 16
        radius: 12
        color: Colors.white
        border.width: 1
        border.color: SchedulePalette.rule

        IconButton {
            id: tick

            focus: true
            x: 16
            anchors.verticalCenter: parent.verticalCenter
            symbol: row.isCompleted ? "checkmark.circle.fill" : "circle"
            size: 20
            color: row.isCompleted ? SchedulePalette.green : SchedulePalette.inactive
            accessibleLabel: (row.isCompleted ? "Mark as open: " : "Mark as done: ") + row.goal
            onClicked: row.toggled()
        }
        Column {
            id: texts

            anchors.left: tick.right
            anchors.leftMargin: 12
            anchors.right: trash.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            spacing: 4

            PlainText {
                width: parent.width
                text: row.goal
                horizontalAlignment: Text.AlignLeft
                wrapMode: Text.Wrap
                font: Typography.struckOut(Typography.system(16), row.isCompleted)
                color: row.isCompleted ? SchedulePalette.secondaryText : SchedulePalette.text
            }
            Row {
                spacing: 8

                SymbolIcon {
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: "bell.fill"
                    size: 12
                    color: SchedulePalette.amber
                }
                PlainText {
                    text: "Reminder set"
                    font: Typography.system(12)
                    color: SchedulePalette.secondaryText
                }
            }
        }
        IconButton {
            id: trash

            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            width: 32
            height: 32
            symbol: "trash"
            size: 14
            color: SchedulePalette.red
            accessibleLabel: "Delete " + row.goal
            cornerRadius: 6
            background: Rectangle {
                radius: 6
                color: Colors.hex("FEF2F2")
            }
            onClicked: row.deleted()
        }
    }
}
