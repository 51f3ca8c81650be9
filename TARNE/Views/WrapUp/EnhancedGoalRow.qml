pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A goal with its verdict, to be read.
Item {
    id: row

    required property string goalText
    required property string statusIcon
    required property color statusColor
    required property string statusText

    implicitHeight: 8 + Math.max(text.implicitHeight, badge.implicitHeight) + 8

    Item {
        id: icon

        width: 20
        height: parent.height

        SymbolIcon {
            anchors.centerIn: parent
            symbol: row.statusIcon
            size: 16
            weight: Font.Medium
            color: row.statusColor
        }
    }
    LongText {
        id: text

        x: icon.width + 12
        width: badge.x - 12 - x
        anchors.verticalCenter: parent.verticalCenter
        text: row.goalText
        font: Typography.system(15, Font.Medium)
        color: Colors.label
    }
    Badge {
        id: badge

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: row.statusText
        color: row.statusColor
    }
}
