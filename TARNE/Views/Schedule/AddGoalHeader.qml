pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// The head of the add-goal sheet.
Rectangle {
    id: header

    signal closed

    implicitHeight: titles.implicitHeight + 2 * 20
    color: Colors.white
    radius: 16

    Rectangle {
        y: 16
        width: parent.width
        height: parent.height - 16
        color: Colors.white
    }
    Column {
        id: titles

        x: 24
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4

        PlainText {
            text: "New Goal"
            font: Typography.system(20, Font.DemiBold)
            color: Colors.hex("1F2937")
            Accessible.role: Accessible.Heading
        }
        PlainText {
            text: "Schedule a focus session"
            font: Typography.system(14)
            color: Colors.hex("6B7280")
        }
    }
    CloseButton {
        anchors.right: parent.right
        anchors.rightMargin: 24
        anchors.verticalCenter: parent.verticalCenter
        text: "Close"
        onClicked: header.closed()
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Colors.hex("E5E7EB")
    }
}
