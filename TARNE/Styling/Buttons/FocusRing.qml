pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// The ring around a control that the keyboard has reached. A child of the control that it rings.
Rectangle {
    // The corner radius of the control.
    property real cornerRadius: Layout.cornerRadius
    // Whether the control has the focus by way of the keyboard.
    required property bool isShown

    anchors.fill: parent
    anchors.margins: -3
    visible: isShown
    color: "transparent"
    radius: cornerRadius + 3
    border.width: 3
    border.color: Colors.withOpacity(Colors.accent, 0.5)
}
