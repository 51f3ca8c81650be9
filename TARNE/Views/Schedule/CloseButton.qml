pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The square close button of the schedule and its sheet.
IconButton {
    symbol: "xmark"
    weight: Font.Medium
    color: SchedulePalette.secondaryText
    implicitWidth: 44
    implicitHeight: 44
    cornerRadius: 10
    background: Rectangle {
        radius: 10
        color: SchedulePalette.control
        border.width: 1
        border.color: SchedulePalette.rule
    }
}
