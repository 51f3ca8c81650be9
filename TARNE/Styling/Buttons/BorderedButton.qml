pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import TARNE.Styling

// The platform's bordered button; `isProminent` fills it with the accent colour, `isSmall` is its
// small control size.
T.AbstractButton {
    id: button

    property bool isProminent: false
    property bool isSmall: false

    readonly property color fill: isProminent ? Colors.accent : Colors.controlBackground

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    horizontalPadding: isSmall ? 10 : 14
    verticalPadding: isSmall ? 3 : 5
    focusPolicy: Qt.TabFocus
    font: Typography.system(isSmall ? 12 : 13, Font.Medium)
    opacity: enabled ? 1 : 0.5
    Accessible.name: text
    // What an input method still composes belongs to what the press is about. This handler comes
    // before those of who uses the button.
    onClicked: InputMethod.commit()
    // Space presses already. A key that is held presses once.
    Keys.onPressed: event => event.accepted = event.isAutoRepeat && event.key === Qt.Key_Space
    Keys.onReleased: event => event.accepted = event.isAutoRepeat && event.key === Qt.Key_Space
    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat)
            button.clicked();
    }
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat)
            button.clicked();
    }
    Accessible.onPressAction: {
        if (button.enabled)
            button.clicked();
    }

    HoverHandler {
        cursorShape: button.enabled ? Qt.PointingHandCursor : Qt.ArrowCursor
    }

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

    contentItem: Text {
        text: button.text
        font: button.font
        color: button.isProminent ? Colors.white : Colors.primaryText
        textFormat: Text.PlainText
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
}
