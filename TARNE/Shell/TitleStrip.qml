pragma ComponentBehavior: Bound
import QtQuick
import TARNE
import TARNE.Styling

// What stands in for the title bar that the window does not have: a place to drag it by, the menu,
// and the two buttons. There is no zoom.
Item {
    id: strip

    required property TARNEApp app
    required property UpdateCheck updateCheck
    required property MainWindow window

    implicitHeight: 40

    WindowMoveArea {
        anchors.fill: parent
    }
    MenuButton {
        objectName: "menuButton"
        x: 10
        anchors.verticalCenter: parent.verticalCenter
        onNewSessionRequested: strip.app.newSession()
        onUpdateCheckRequested: strip.updateCheck.checkForUpdates()
        onQuitRequested: strip.app.quit()
    }
    // An odd size puts the line of the one on whole pixels.
    Row {
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 14

        IconButton {
            symbol: "minus"
            size: 15
            accessibleLabel: "Minimize window"
            hasPointingHand: false
            onClicked: strip.window.showMinimized()
        }
        IconButton {
            symbol: "xmark"
            size: 15
            accessibleLabel: "Close window"
            hasPointingHand: false
            onClicked: strip.window.close()
        }
    }
}
