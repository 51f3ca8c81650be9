pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// What the timer screen shows while there is a session: the count-down and its two controls.
Column {
    id: face

    required property TimerView view

    spacing: Layout.spacingLarge

    PlainText {
        anchors.horizontalCenter: parent.horizontalCenter
        text: "⏱️ Session"
        font: Typography.heading1
        Accessible.role: Accessible.Heading
    }

    PausedBadge {
        anchors.horizontalCenter: parent.horizontalCenter
        isShown: face.view.isPaused
    }

    TimerDisplay {
        anchors.horizontalCenter: parent.horizontalCenter
        view: face.view
    }

    Row {
        anchors.horizontalCenter: parent.horizontalCenter
        topPadding: Layout.spacingLarge
        spacing: Layout.spacingMedium

        PrimaryButton {
            focus: face.visible
            symbol: face.view.isTimerActive ? "pause.fill" : "play.fill"
            text: face.view.isTimerActive ? "Pause" : "Resume"
            minimumWidth: 90
            onClicked: face.view.toggleTimer()
        }
        SecondaryButton {
            symbol: "stop.fill"
            text: "Stop"
            minimumWidth: 90
            onClicked: face.view.resetTimer()
        }
    }
}
