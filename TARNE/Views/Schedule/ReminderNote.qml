pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// Says that a goal is reminded of an hour ahead. There is no choice.
Rectangle {
    id: note

    implicitWidth: texts.implicitWidth + 2 * 12
    implicitHeight: texts.implicitHeight + 2 * 8
    radius: 8
    color: Colors.hex("FEF3C7")

    Column {
        id: texts

        anchors.centerIn: parent
        spacing: 6

        Row {
            anchors.right: parent.right
            spacing: 6

            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                symbol: "bell.fill"
                size: 14
                weight: Font.Medium
                color: SchedulePalette.amber
            }
            PlainText {
                text: "Reminder"
                font: Typography.system(14, Font.DemiBold)
                color: SchedulePalette.softerText
            }
        }
        PlainText {
            anchors.right: parent.right
            text: "1 hour before"
            font: Typography.system(13)
            color: SchedulePalette.secondaryText
        }
    }
}
