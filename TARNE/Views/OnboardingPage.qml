pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A page of onboarding, which fades in and out. Hidden, it cannot be reached in any way.
FocusScope {
    id: page

    required property bool isShown

    visible: opacity > 0
    enabled: isShown
    opacity: isShown ? 1 : 0

    Behavior on opacity {
        EaseInOut {
            duration: 300
        }
    }
}
