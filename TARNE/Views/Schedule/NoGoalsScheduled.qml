pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// What the schedule shows for a day without goals.
Column {
    id: state

    readonly property bool isFocused: button.activeFocus

    signal addGoal

    topPadding: 60
    bottomPadding: 60
    spacing: 16

    SymbolIcon {
        anchors.horizontalCenter: parent.horizontalCenter
        symbol: "calendar.badge.plus"
        size: 48
        color: SchedulePalette.inactive
    }
    Column {
        width: parent.width
        spacing: 8

        PlainText {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: "No goals scheduled"
            font: Typography.system(18, Font.Medium)
            color: SchedulePalette.text
        }
        PlainText {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: "Add your first goal to get started with focused work sessions"
            font: Typography.system(14)
            color: SchedulePalette.secondaryText
        }
    }
    GradientButton {
        id: button

        anchors.horizontalCenter: parent.horizontalCenter
        ground: SchedulePalette.ground
        text: "Add Goal"
        symbol: "plus"
        horizontalPadding: 24
        verticalPadding: 14
        cornerRadius: 12
        onClicked: state.addGoal()
    }
}
