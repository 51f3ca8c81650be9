pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import TARNE.Styling

// The menu of the application, behind a button in the title strip.
IconButton {
    id: button

    signal newSessionRequested
    signal updateCheckRequested
    signal quitRequested

    symbol: "line.3.horizontal"
    accessibleLabel: "Menu"
    size: 17
    hasPointingHand: false
    onClicked: menu.opened ? menu.close() : menu.open()

    component Entry: T.MenuItem {
        id: entry

        property string keys

        implicitWidth: menu.contentWidth
        implicitHeight: Typography.grown(28)
        Accessible.name: text
        Accessible.onPressAction: clicked()

        background: Rectangle {
            color: entry.highlighted ? Colors.accent : "transparent"
            radius: 5
        }
        contentItem: Item {
            ControlText {
                x: 10
                anchors.verticalCenter: parent.verticalCenter
                text: entry.text
                font: Typography.body
                color: entry.highlighted ? Colors.white : Colors.primaryText
            }
            ControlText {
                anchors.right: parent.right
                anchors.rightMargin: 10
                anchors.verticalCenter: parent.verticalCenter
                text: entry.keys
                font: Typography.caption
                color: entry.highlighted ? Colors.white : Colors.secondaryText
            }
        }
    }

    MenuFocus {
        id: formerFocus

        onCoverChanging: menu.close()
    }
    T.Menu {
        id: menu

        y: button.height + 8
        implicitWidth: contentWidth + leftPadding + rightPadding
        implicitHeight: contentHeight + topPadding + bottomPadding
        contentWidth: Typography.grown(210)
        padding: 5
        margins: 4
        // A press on the button closes it by way of the button, not before.
        closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
        onAboutToShow: {
            contentItem.parent.Accessible.name = button.text;
            formerFocus.note();
        }
        onClosed: formerFocus.giveBack()

        Entry {
            text: "New Session"
            keys: "Ctrl+N"
            onTriggered: button.newSessionRequested()
        }
        Entry {
            text: "Check for Updates..."
            onTriggered: {
                // What comes up is to find the focus where the menu hands it back to.
                menu.close();
                button.updateCheckRequested();
            }
        }
        Entry {
            text: "Quit TARNE"
            keys: "Ctrl+Q"
            onTriggered: button.quitRequested()
        }

        background: Item {
            ShadowImage {
                anchors.fill: parent
                color: Colors.withOpacity(Colors.black, 0.2)
                cornerRadius: 8
                blurRadius: 12
                offsetY: 4
            }
            RoundedBox {
                anchors.fill: parent
                color: Colors.white
                radius: 8
                outlineColor: Colors.border
                outlineWidth: 1
            }
        }
        contentItem: ListView {
            implicitHeight: contentHeight
            model: menu.contentModel
            currentIndex: menu.currentIndex
            interactive: false
        }
    }
}
