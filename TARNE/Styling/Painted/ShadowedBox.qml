pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A rounded ground with a soft shadow, for what lies on it.
Item {
    id: box

    property color color: Colors.background
    property real cornerRadius: Layout.cornerRadius
    property color outlineColor: "transparent"
    property real outlineWidth: 0
    property color shadowColor: Colors.shadow
    property real shadowRadius: 4
    property real shadowOffset: 2

    ShadowImage {
        anchors.fill: parent
        visible: box.shadowRadius > 0
        color: box.shadowColor
        cornerRadius: box.cornerRadius
        blurRadius: box.shadowRadius
        offsetY: box.shadowOffset
    }
    Rectangle {
        anchors.fill: parent
        radius: box.cornerRadius
        color: box.color
        border.color: box.outlineColor
        border.width: box.outlineWidth
    }
}
