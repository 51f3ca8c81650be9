pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// What scrolls a Flickable beside wheel and touch: the keys that the Flickable forwards to this item,
// and a thin bar at its right side, there whenever there is more than fits. It lies over the
// Flickable, which goes where it is asked to go and keeps to its own bounds. The bar is no template's:
// assistive tools would be told of it, and a press beside its handle would scroll.
Item {
    id: scroller

    required property Flickable view

    readonly property real share: scroller.view.visibleArea.heightRatio

    // The place of the content that is to come to the upper edge: infinite for its beginning and end.
    signal asked(y: real)

    Keys.onPressed: event => {
        const y = scroller.view.contentY;
        const page = scroller.view.height * 0.9;
        switch (event.key) {
        case Qt.Key_PageDown: scroller.asked(y + page); break;
        case Qt.Key_PageUp: scroller.asked(y - page); break;
        case Qt.Key_Down: scroller.asked(y + 40); break;
        case Qt.Key_Up: scroller.asked(y - 40); break;
        case Qt.Key_Home: scroller.asked(-Infinity); break;
        case Qt.Key_End: scroller.asked(Infinity); break;
        default: return;
        }
        event.accepted = true;
    }

    Item {
        id: bar

        objectName: "scrollBar"
        anchors.right: parent.right
        width: 14
        height: Math.max(24, scroller.share * scroller.view.height)
        y: Math.min(scroller.view.visibleArea.yPosition * scroller.view.height, scroller.view.height - height)
        visible: scroller.share < 1

        Rectangle {
            anchors.right: parent.right
            anchors.rightMargin: 3
            width: 6
            height: parent.height
            radius: 3
            color: Colors.tertiaryLabel
        }
        MouseArea {
            property real grip: 0

            anchors.fill: parent
            preventStealing: true
            onPressed: mouse => grip = mouse.y
            onPositionChanged: mouse =>
                scroller.asked(scroller.view.contentY + (mouse.y - grip) / scroller.share)
        }
    }
}
