pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The orb and the time below it.
Column {
    id: display

    required property TimerView view

    topPadding: Layout.spacingLarge
    bottomPadding: Layout.spacingLarge
    spacing: Layout.spacingLarge

    Item {
        anchors.horizontalCenter: parent.horizontalCenter
        width: 250
        height: 250

        GlowingOrbView {
            anchors.centerIn: parent
            progress: display.view.orbProgress
            isActive: display.view.isTimerActive
            isPaused: display.view.isPaused
        }
    }
    PlainText {
        anchors.horizontalCenter: parent.horizontalCenter
        text: display.view.timeText
        font: Typography.timerDisplay
        color: Colors.primaryText
    }
}
