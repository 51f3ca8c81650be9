pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A column on a rounded ground with a soft shadow. Untouched it is CardStyle; screens that draw their
// cards by hand give their own numbers.
Item {
    id: card

    default property alias content: column.data
    property alias spacing: column.spacing
    property real padding: Layout.padding
    property color color: Colors.background
    property real cornerRadius: Layout.cornerRadius
    property color shadowColor: Colors.shadow
    property real shadowRadius: 4
    property real shadowOffset: 2
    property color outlineColor: "transparent"
    property real outlineWidth: 0

    implicitWidth: column.implicitWidth + 2 * padding
    implicitHeight: column.implicitHeight + 2 * padding

    ShadowImage {
        anchors.fill: parent
        visible: card.shadowRadius > 0
        color: card.shadowColor
        cornerRadius: card.cornerRadius
        blurRadius: card.shadowRadius
        offsetY: card.shadowOffset
    }
    Rectangle {
        anchors.fill: parent
        radius: card.cornerRadius
        color: card.color
        border.color: card.outlineColor
        border.width: card.outlineWidth
    }
    Column {
        id: column

        x: card.padding
        y: card.padding
        width: card.width - 2 * card.padding
    }
}
