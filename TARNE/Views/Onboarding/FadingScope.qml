pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// What fades in and out with all that is in it. Hidden, it cannot be reached in any way.
FocusScope {
    id: scope

    required property bool isShown
    // How long that takes, in milliseconds: as the platform's default animation where none is named.
    property int duration: 350

    visible: opacity > 0
    enabled: isShown
    opacity: isShown ? 1 : 0

    Behavior on opacity {
        EaseInOut { time: scope.duration }
    }
}
