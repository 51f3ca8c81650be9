pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The orb and the time below it. On the face that is hidden both stand still.
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
            isOnScreen: display.view.isShown
            progress: display.visible ? display.view.orbProgress : 0
            isActive: display.view.isTimerActive
            isPaused: display.view.isPaused
            isStill: Wishes.reducedMotion
        }
    }
    PlainText {
        anchors.horizontalCenter: parent.horizontalCenter
        // On the hidden face a text of the same size, so that nothing moves when it comes.
        text: display.visible ? display.view.timeText : "00:00:00"
        font: Typography.timerDisplay
        color: Colors.primaryText
    }
}
