pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The two buttons at the foot of the add-goal sheet.
Rectangle {
    id: bar

    required property bool canAddGoal

    signal cancelled
    signal scheduled

    implicitHeight: 48 + 2 * 24
    color: Colors.white
    radius: 16

    Rectangle {
        width: parent.width
        height: parent.height - 16
        color: Colors.white
    }
    Separator {
        width: parent.width
        color: SchedulePalette.rule
    }
    Row {
        id: row

        readonly property real buttonWidth: (width - spacing) / 2

        x: 24
        y: 24
        width: parent.width - 2 * 24
        spacing: 16

        PlainButton {
            id: cancel

            width: row.buttonWidth
            height: 48
            text: "Cancel"
            cornerRadius: 12
            background: RoundedBox {
                color: SchedulePalette.control
                radius: 12
                outlineColor: SchedulePalette.rule
                outlineWidth: 1.5
            }
            contentItem: ControlText {
                text: cancel.text
                font: Typography.system(16, Font.DemiBold)
                color: SchedulePalette.secondaryText
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
            }
            onClicked: bar.cancelled()
        }
        GradientButton {
            width: row.buttonWidth
            height: 48
            text: "Schedule Goal"
            symbol: "calendar.badge.plus"
            textSize: 16
            cornerRadius: 12
            isAvailable: bar.canAddGoal
            onClicked: bar.scheduled()
        }
    }
}
