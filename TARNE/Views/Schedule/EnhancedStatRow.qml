pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// A counter of the schedule: its figure stands small under the label and large at the right.
Item {
    id: row

    required property string icon
    required property string label
    required property int value
    required property color color

    implicitHeight: 36 + 2 * 12

    Rectangle {
        anchors.fill: parent
        radius: 10
        color: Colors.hex("FAFBFC")
        border.width: 1
        border.color: SchedulePalette.rule
    }
    SymbolDisc {
        id: disc

        x: 16
        anchors.verticalCenter: parent.verticalCenter
        diameter: 36
        symbol: row.icon
        symbolColor: row.color
        weight: Font.Medium
    }
    Column {
        anchors.left: disc.right
        anchors.leftMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        PlainText {
            text: row.label
            font: Typography.system(14, Font.Medium)
            color: SchedulePalette.softerText
        }
        PlainText {
            text: row.value + " scheduled"
            font: Typography.system(12)
            color: SchedulePalette.secondaryText
        }
    }
    PlainText {
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        text: row.value
        font: Typography.system(18, Font.Bold)
        color: row.color
    }
}
