pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A column that scrolls when it is higher than its place, by wheel, touch and keyboard, with a thin
// bar that shows while it moves. What receives the focus by keyboard is brought into view, and the
// caret of what is written in stays in view.
Flickable {
    id: view

    default property alias content: column.data
    property alias spacing: column.spacing
    property real horizontalPadding: 0
    property real topPadding: 0
    property real bottomPadding: 0
    // Whether what has the focus is brought into view.
    property bool revealsFocus: true

    readonly property Item focusedItem: Window.activeFocusItem
    // Of what has the focus and is written in, in its coordinates.
    readonly property rect caret: focusedItem?.["cursorRectangle"] ?? Qt.rect(0, 0, 0, 0)

    function holdsFocus(): bool {
        for (let item = focusedItem; item; item = item.parent) {
            if (item === column)
                return true;
        }
        return false;
    }

    function reveal(item: Item): void {
        const top = item.mapToItem(view.contentItem, 0, 0).y;
        view.revealSpan(top, top + item.height);
    }

    function revealCaret(): void {
        if (view.caret.height === 0 || !view.holdsFocus())
            return;
        const caret = view.focusedItem.mapToItem(view.contentItem, view.caret);
        view.revealSpan(caret.y, caret.y + caret.height);
    }

    function revealSpan(top: real, bottom: real): void {
        if (!view.revealsFocus)
            return;
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
        if (view.holdsFocus())
            view.reveal(focusedItem);
    }
    onRevealsFocusChanged: {
        if (view.holdsFocus())
            view.reveal(focusedItem);
    }
    onCaretChanged: caretFollower.restart()
    onContentHeightChanged: caretFollower.restart()

    // Later, when what is written in has grown and scrolled itself.
    Timer {
        id: caretFollower

        interval: 0
        onTriggered: view.revealCaret()
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
