pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// The platform's bordered button; `isProminent` fills it with the accent colour, `isSmall` is its
// small control size.
Pressable {
    id: button

    property bool isProminent: false
    property bool isSmall: false

    readonly property color fill: isProminent ? Colors.accent : Colors.controlBackground

    horizontalPadding: isSmall ? 10 : 14
    verticalPadding: isSmall ? 3 : 5
    font: Typography.system(isSmall ? 12 : 13, Font.Medium)
    opacity: isAvailable ? 1 : 0.5

    background: Rectangle {
        radius: 6
        color: button.down ? Qt.darker(button.fill, 1.1) : button.fill
        border.width: button.isProminent ? 0 : 1
        border.color: Colors.separator

        FocusRing {
            isShown: button.visualFocus
            cornerRadius: 6
        }
    }

    contentItem: ControlText {
        text: button.text
        font: button.font
        color: button.isProminent ? Colors.white : Colors.primaryText
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
}
