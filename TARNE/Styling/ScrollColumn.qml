pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A column that scrolls when it is higher than its place, by wheel, touch and keyboard, with a thin
// bar that shows while it moves. What receives the focus by keyboard is brought into view.
Flickable {
    id: view

    default property alias content: column.data
    property alias spacing: column.spacing
    property real horizontalPadding: 0
    property real topPadding: 0
    property real bottomPadding: 0

    readonly property Item focusedItem: Window.activeFocusItem

    function reveal(item: Item): void {
        const top = item.mapToItem(view.contentItem, 0, 0).y;
        const bottom = top + item.height;
        if (top < view.contentY)
            view.contentY = Math.max(0, top - 8);
        else if (bottom > view.contentY + view.height)
            view.contentY = Math.min(view.contentHeight - view.height, bottom + 8 - view.height);
    }

    function scrollTo(y: real): void {
        view.contentY = Math.max(0, Math.min(y, view.contentHeight - view.height));
    }

    clip: true
    contentWidth: width
    contentHeight: column.implicitHeight
    boundsBehavior: Flickable.StopAtBounds
    flickableDirection: Flickable.VerticalFlick
    interactive: contentHeight > height

    Keys.onPressed: event => {
        const page = view.height * 0.9;
        switch (event.key) {
        case Qt.Key_PageDown: view.scrollTo(view.contentY + page); break;
        case Qt.Key_PageUp: view.scrollTo(view.contentY - page); break;
        case Qt.Key_Down: view.scrollTo(view.contentY + 40); break;
        case Qt.Key_Up: view.scrollTo(view.contentY - 40); break;
        case Qt.Key_Home: view.scrollTo(0); break;
        case Qt.Key_End: view.scrollTo(view.contentHeight); break;
        default: return;
        }
        event.accepted = true;
    }

    onFocusedItemChanged: {
        for (let item = focusedItem; item; item = item.parent) {
            if (item === column) {
                view.reveal(focusedItem);
                break;
            }
        }
    }

    Column {
        id: column

        x: view.horizontalPadding
        width: view.width - 2 * view.horizontalPadding
        topPadding: view.topPadding
        bottomPadding: view.bottomPadding
    }

    Rectangle {
        parent: view
        anchors.right: parent.right
        anchors.rightMargin: 3
        y: view.visibleArea.yPosition * view.height
        width: 6
        height: Math.max(24, view.visibleArea.heightRatio * view.height)
        radius: 3
        color: Colors.tertiaryLabel
        visible: view.interactive && opacity > 0
        opacity: view.moving ? 1 : 0

        Behavior on opacity {
            NumberAnimation { duration: 200 }
        }
    }
}
