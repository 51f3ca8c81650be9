pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// The square close button of the schedule and its sheet; `text` is its name.
PlainButton {
    id: button

    implicitWidth: 44
    implicitHeight: 44
    cornerRadius: 10
    background: Rectangle {
        radius: 10
        color: Colors.hex("F9FAFB")
        border.width: 1
        border.color: Colors.hex("E5E7EB")
    }
    contentItem: Item {
        SymbolIcon {
            anchors.centerIn: parent
            symbol: "xmark"
            size: 16
            weight: Font.Medium
            color: Colors.hex("6B7280")
        }
    }
}
