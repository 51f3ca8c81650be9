pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import QtQuick.Templates as T

// A button without a look of its own: what it shows is its `contentItem`, over its `background` if
// it is given one. While pressed it steps back a little. Its accessible name is its `text`, which it
// does not draw.
T.AbstractButton {
    id: button

    // Whether the pointer becomes a hand while over it.
    property bool hasPointingHand: true
    property real cornerRadius: 6
    // What the button lies on, where it has a background of its own.
    property color ground: Colors.white

    readonly property real wholeOpacity: down ? 0.6 : 1

    implicitWidth: Math.max(implicitBackgroundWidth, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(implicitBackgroundHeight, implicitContentHeight + topPadding + bottomPadding)
    focusPolicy: Qt.TabFocus
    opacity: background ? 1 : wholeOpacity
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
        cursorShape: button.enabled && button.hasPointingHand ? Qt.PointingHandCursor : Qt.ArrowCursor
    }
    GroundVeil {
        ground: button.ground
        radius: button.cornerRadius
        wholeOpacity: button.background ? button.wholeOpacity : 1
    }
    FocusRing {
        isShown: button.visualFocus
        cornerRadius: button.cornerRadius
    }
}
