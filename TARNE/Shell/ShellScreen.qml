pragma ComponentBehavior: Bound
import QtQuick
import TARNE
import TARNE.Styling

// All of the window: the title strip, and below it what lies behind the gate.
Rectangle {
    id: shell

    required property TARNEApp app
    required property UpdateCheck updateCheck
    required property MainWindow window

    color: Colors.background

    Shortcut {
        sequence: "Ctrl+N"
        onActivated: shell.app.newSession()
    }
    Shortcut {
        sequence: "Ctrl+Q"
        onActivated: shell.app.quit()
    }

    TitleStrip {
        id: titleStrip

        width: parent.width
        app: shell.app
        updateCheck: shell.updateCheck
        window: shell.window
    }
    Item {
        anchors.top: titleStrip.bottom
        anchors.bottom: parent.bottom
        width: parent.width

        ComponentSlot {
            anchors.fill: parent
            focus: isActive
            isActive: !shell.app.showsTabs
            document: Qt.resolvedUrl("Views/OnboardingScreen.qml")
            view: shell.app.onboardingView
        }
        ComponentSlot {
            anchors.fill: parent
            focus: isActive
            isActive: shell.app.showsTabs
            component: content
        }
    }
    Component {
        id: content

        ContentScreen {
            contentView: shell.app.contentView
        }
    }
    Alert {
        isPresented: shell.updateCheck.isPresented
        title: shell.updateCheck.title
        message: shell.updateCheck.message
        buttonText: shell.updateCheck.offersDownload ? "Open Download Page" : "OK"
        otherButtonText: shell.updateCheck.offersDownload ? "Later" : ""
        onAccepted: shell.updateCheck.download()
        onDismissed: shell.updateCheck.dismiss()
    }

    // A frameless window has no shadow: without an edge, white would run into white.
    Rectangle {
        anchors.fill: parent
        color: "transparent"
        border.color: Colors.border
        border.width: 1
    }
}
