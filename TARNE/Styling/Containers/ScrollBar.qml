pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// The thin bar at the right side of what scrolls, there whenever there is more than fits. It can be
// dragged.
Item {
    id: bar

    required property Flickable view

    readonly property real share: bar.view.visibleArea.heightRatio

    // By how much of what it scrolls the bar was dragged.
    signal dragged(distance: real)

    objectName: "scrollBar"
    width: 14
    height: Math.max(24, bar.share * bar.view.height)
    y: Math.min(bar.view.visibleArea.yPosition * bar.view.height, bar.view.height - bar.height)
    visible: bar.share < 1

    Rectangle {
        anchors.right: parent.right
        anchors.rightMargin: 3
        width: 6
        height: parent.height
        radius: 3
        color: Colors.tertiaryLabel
    }
    MouseArea {
        property real grip: 0

        anchors.fill: parent
        preventStealing: true
        onPressed: mouse => grip = mouse.y
        onPositionChanged: mouse => bar.dragged((mouse.y - grip) / bar.share)
    }
}
