pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

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
        border.color: Colors.hex("E5E7EB")
    }
    Rectangle {
        id: disc

        x: 16
        anchors.verticalCenter: parent.verticalCenter
        width: 36
        height: 36
        radius: 18
        color: Colors.withOpacity(row.color, 0.1)

        SymbolIcon {
            anchors.centerIn: parent
            symbol: row.icon
            size: 16
            weight: Font.Medium
            color: row.color
        }
    }
    Column {
        anchors.left: disc.right
        anchors.leftMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        PlainText {
            text: row.label
            font: Typography.system(14, Font.Medium)
            color: Colors.hex("374151")
        }
        PlainText {
            text: row.value + " scheduled"
            font: Typography.system(12)
            color: Colors.hex("6B7280")
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
