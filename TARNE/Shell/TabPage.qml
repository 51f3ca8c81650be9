pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A tab's screen with its transition: it comes in from the trailing edge and goes out to the
// leading edge, fading both ways. Made when it is first shown; hidden, it draws and animates
// nothing.
FocusScope {
    id: page

    required property int tabIndex
    required property int selectedTab
    // The document of its screen, and the screen's view object, which is there from when the tab is
    // first shown.
    required property url screen
    required property QtObject view

    readonly property bool isSelected: selectedTab === tabIndex
    // The identity by which each tab counts as another view.
    readonly property string identity: "tab-" + tabIndex

    objectName: identity
    width: parent.width
    height: parent.height
    visible: opacity > 0
    enabled: isSelected
    focus: isSelected
    state: isSelected ? "shown" : "gone"
    Keys.forwardTo: [slot.item]

    ComponentSlot {
        id: slot

        anchors.fill: parent
        isActive: true
        document: page.screen
        view: page.view
        focus: true
    }

    states: [
        State {
            name: "shown"
            PropertyChanges {
                page.x: 0
                page.opacity: 1
            }
        },
        State {
            name: "gone"
            PropertyChanges {
                page.x: 0
                page.opacity: 0
            }
        }
    ]
    transitions: [
        Transition {
            from: "gone"
            to: "shown"
            EaseInOut {
                property: "x"
                from: page.width
                to: 0
                time: 300
            }
            EaseInOut {
                property: "opacity"
                time: 300
            }
        },
        Transition {
            from: "shown"
            to: "gone"
            EaseInOut {
                property: "x"
                from: 0
                to: -page.width
                time: 300
            }
            EaseInOut {
                property: "opacity"
                time: 300
            }
        }
    ]
}
