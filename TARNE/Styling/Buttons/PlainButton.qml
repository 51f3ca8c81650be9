pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A button without a look of its own: what it shows is its `contentItem`, over its `background` if
// it is given one. While pressed it steps back a little. Its accessible name is its `text`, which it
// does not draw.
Pressable {
    id: button

    property real cornerRadius: 6
    // What the button lies on, where it has a background of its own.
    property color ground: Colors.white

    readonly property real wholeOpacity: down ? 0.6 : 1

    opacity: background ? 1 : wholeOpacity

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
