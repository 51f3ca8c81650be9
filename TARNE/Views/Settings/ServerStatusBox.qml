pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// Whether the classification server runs, what went wrong with it, and its start or restart.
GroupBox {
    id: box

    required property SettingsView view

    title: "Server Status"
    contentSpacing: 12

    Item {
        width: parent.width
        implicitHeight: Math.max(status.implicitHeight, action.implicitHeight)

        Rectangle {
            id: lamp

            anchors.verticalCenter: parent.verticalCenter
            width: 8
            height: 8
            radius: 4
            color: box.view.isRunning ? Colors.green : Colors.red
        }
        PlainText {
            id: status

            anchors.left: lamp.right
            anchors.leftMargin: Layout.defaultSpacing
            anchors.verticalCenter: parent.verticalCenter
            text: box.view.statusText
            font: Typography.weighted(Typography.body, Font.Medium)
        }
        BorderedButton {
            id: action

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            isSmall: true
            isProminent: !box.view.isRunning
            text: box.view.isRunning ? "Restart" : "Start"
            onClicked: box.view.isRunning ? box.view.restartServer() : box.view.startServer()
        }
    }
    SettingsNote {
        // It is announced as it appears, so its name comes first.
        visible: Accessible.name.length > 0
        topPadding: 4
        text: box.view.serverError
        color: Colors.red
        Accessible.role: Accessible.Notification
    }
    SettingsNote {
        text: "The classification server runs locally on port 3000"
    }
}
