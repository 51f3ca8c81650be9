pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A short text in one colour on a tint of the same colour.
Item {
    id: badge

    required property string text
    property color color: Colors.accent
    property font font: Typography.system(11, Font.Medium)
    property real tint: 0.15
    property real outlineTint: 0
    property real horizontalPadding: 8
    property real verticalPadding: 4
    // A capsule unless told otherwise.
    property real cornerRadius: height / 2

    implicitWidth: label.implicitWidth + 2 * horizontalPadding
    implicitHeight: label.implicitHeight + 2 * verticalPadding

    RoundedBox {
        anchors.fill: parent
        radius: badge.cornerRadius
        color: Colors.withOpacity(badge.color, badge.tint)
        outlineColor: Colors.withOpacity(badge.color, badge.outlineTint)
        outlineWidth: badge.outlineTint > 0 ? 1 : 0
    }
    PlainText {
        id: label

        anchors.centerIn: parent
        text: badge.text
        font: badge.font
        color: badge.color
    }
}
