pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A column that scrolls when it is higher than its place, by wheel, touch and keyboard, with a bar
// that shows whenever it is. What receives the focus is brought into view, and stays there when
// heights change until it is scrolled away from; the caret of what is written in stays in view. So
// does what `show` is called with, until the focus moves or the user scrolls.
Flickable {
    id: view

    default property alias content: column.data
    property alias spacing: column.spacing
    property real horizontalPadding: 0
    property real topPadding: 0
    property real bottomPadding: 0
    // Whether what has the focus is brought into view.
    property bool revealsFocus: true

    // What has the focus, or gets it back when the window comes to the front again.
    property Item focusedItem: null
    readonly property Item activeItem: Window.activeFocusItem
    // Of what has the focus and is written in, in its coordinates.
    readonly property rect caret: focusedItem?.["cursorRectangle"] ?? Qt.rect(0, 0, 0, 0)
    // Whether what has the focus was last left in sight.
    property bool keepsFocusInSight: true
    property Item shownItem: null

    function holdsFocus(): bool {
        for (let item = focusedItem; item; item = item.parent) {
            if (item === column)
                return true;
        }
        return false;
    }

    function show(item: Item): void {
        view.shownItem = item;
        follower.restart();
    }

    function reveal(item: Item): void {
        const top = item.mapToItem(view.contentItem, 0, 0).y;
        view.revealSpan(top, top + item.height);
    }

    function revealCaret(): void {
        const caret = view.focusedItem.mapToItem(view.contentItem, view.caret);
        view.revealSpan(caret.y, caret.y + caret.height);
    }

    function revealSpan(top: real, bottom: real): void {
        if (!view.revealsFocus)
            return;
        if (top < view.contentY)
            view.moveTo(top - 8);
        else if (bottom > view.contentY + view.height)
            view.moveTo(bottom + 8 - view.height);
    }

    function moveTo(y: real): void {
        view.cancelFlick();
        view.contentY = Math.max(0, Math.min(y, view.contentHeight - view.height));
    }

    function scrollTo(y: real): void {
        view.moveTo(y);
        view.noteSight();
    }

    // For what replaces all that was there. What has the focus then is brought into view from here.
    function scrollToTop(): void {
        view.moveTo(0);
        view.keepsFocusInSight = true;
        follower.restart();
    }

    function noteSight(): void {
        view.shownItem = null;
        if (!view.holdsFocus())
            return;
        const top = view.focusedItem.mapToItem(view, 0, 0).y;
        view.keepsFocusInSight = top < view.height && top + view.focusedItem.height > 0;
    }

    clip: true
    contentWidth: width
    contentHeight: column.implicitHeight
    boundsBehavior: Flickable.StopAtBounds
    flickableDirection: Flickable.VerticalFlick
    interactive: contentHeight > height
    Keys.forwardTo: [scroller]
    onMovementEnded: view.noteSight()
    onActiveItemChanged: {
        if (activeItem)
            focusedItem = activeItem;
    }
    onFocusedItemChanged: {
        if (!view.holdsFocus())
            return;
        view.shownItem = null;
        view.keepsFocusInSight = true;
        view.reveal(focusedItem);
    }
    onRevealsFocusChanged: {
        if (view.holdsFocus())
            view.reveal(focusedItem);
    }
    onCaretChanged: follower.restart()
    onHeightChanged: follower.restart()
    onContentHeightChanged: follower.restart()

    // Later, when all has its place, and what is written in has grown and scrolled itself.
    Timer {
        id: follower

        interval: 0
        onTriggered: {
            if (view.shownItem?.visible) {
                view.reveal(view.shownItem);
                return;
            }
            if (!view.holdsFocus())
                return;
            if (view.caret.height > 0)
                view.revealCaret();
            else if (view.keepsFocusInSight)
                view.reveal(view.focusedItem);
        }
    }

    Column {
        id: column

        x: view.horizontalPadding
        width: view.width - 2 * view.horizontalPadding
        topPadding: view.topPadding
        bottomPadding: view.bottomPadding
    }

    Scroller {
        id: scroller

        parent: view
        anchors.fill: parent
        view: view
        onAsked: y => view.scrollTo(y)
    }
}
