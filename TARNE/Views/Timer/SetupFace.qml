pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// What the timer screen shows between sessions: the chosen length and the way into a session.
Column {
    id: face

    required property TimerView view

    spacing: Layout.spacingLarge

    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        topPadding: Layout.spacingMedium
        spacing: Layout.spacingSmall

        PlainText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Session Setup"
            font: Typography.heading1
            Accessible.role: Accessible.Heading
        }
        PlainText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Configure your focus session and start stillhour"
            font: Typography.body
            color: Colors.secondaryText
        }
    }

    TimerDisplay {
        anchors.horizontalCenter: parent.horizontalCenter
        view: face.view
    }

    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        topPadding: Layout.spacingLarge

        PrimaryButton {
            focus: face.visible
            symbol: "play.fill"
            text: "Start Session"
            minimumWidth: 140
            onClicked: face.view.selectDuration()
        }
    }
}
