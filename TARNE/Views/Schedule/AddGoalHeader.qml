pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The head of the add-goal sheet, whose lower corners are square.
Item {
    id: header

    signal closed

    implicitHeight: head.implicitHeight

    Rectangle {
        y: 16
        width: parent.width
        height: parent.height - 16
        color: Colors.white
    }
    ScheduleHeader {
        id: head

        anchors.fill: parent
        radius: 16
        title: "New Goal"
        subtitle: "Schedule a focus session"

        CloseButton {
            accessibleLabel: "Close"
            onClicked: header.closed()
        }
    }
}
