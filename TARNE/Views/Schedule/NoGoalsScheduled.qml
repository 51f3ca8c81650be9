pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// What the schedule shows for a day without goals.
Column {
    id: state

    signal addGoal

    topPadding: 60
    bottomPadding: 60
    spacing: 16

    SymbolIcon {
        anchors.horizontalCenter: parent.horizontalCenter
        symbol: "calendar.badge.plus"
        size: 48
        color: Colors.hex("D1D5DB")
    }
    Column {
        width: parent.width
        spacing: 8

        PlainText {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: "No goals scheduled"
            font: Typography.system(18, Font.Medium)
            color: Colors.hex("1F2937")
        }
        PlainText {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: "Add your first goal to get started with focused work sessions"
            font: Typography.system(14)
            color: Colors.hex("6B7280")
        }
    }
    GradientButton {
        anchors.horizontalCenter: parent.horizontalCenter
        ground: Colors.hex("FAFAFA")
        text: "Add Goal"
        symbol: "plus"
        horizontalPadding: 24
        verticalPadding: 14
        cornerRadius: 12
        onClicked: state.addGoal()
    }
}
