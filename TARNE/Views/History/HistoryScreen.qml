pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The third tab: finished sessions, newest first. Only the cards in sight exist. A drag past the top
// loads the history anew. It runs from left to right in every locale, as all screens do: their words
// are English.
Rectangle {
    id: screen

    required property HistoryView view

    // How far past the top a drag has to go.
    readonly property real refreshDistance: 60

    color: Colors.background
    // Not the list: where Tab comes to a focus scope it goes on from the row that last had the focus.
    focus: true
    activeFocusOnTab: true
    Accessible.role: Accessible.Pane
    Accessible.name: head.title
    Keys.forwardTo: [list]

    ListView {
        id: list

        // What has the focus, or gets it back when the window comes to the front again.
        property Item focusedItem: null
        readonly property Item activeItem: Window.activeFocusItem
        // The margin that the position was last set for.
        property real heededTopMargin: 0
        // The reader's place when all rows are replaced: the session at the upper edge, and how far
        // its card has gone past that. None at the head of the page, which has a place of its own.
        property string placeSession
        property real placeOffset: 0
        property bool isPlaceNoted: false
        // The coaching text's row that has the focus then: its session, its number, and the reason.
        property string focusedSession
        property int focusedSection: -1
        property int focusReason: Qt.OtherFocusReason
        readonly property real highestY: originY - topMargin
        readonly property real lowestY:
            Math.max(highestY, originY + contentHeight + bottomMargin - height)

        function scrollTo(y: real): void {
            // Where the list begins and ends is a guess until the rows there exist.
            if (y === -Infinity)
                positionViewAtBeginning();
            else if (y === Infinity)
                positionViewAtEnd();
            cancelFlick();
            contentY = Math.max(highestY, Math.min(y, lowestY));
        }
        function notePlace(): void {
            const index = indexAt(0, contentY);
            const row = itemAtIndex(index) as HistoryRow;
            placeSession = screen.view.sessionAt(index);
            placeOffset = contentY - (row ? row.y + row.cardTop : originY);
            isPlaceNoted = true;
            noteFocus();
        }
        function noteFocus(): void {
            focusedSection = -1;
            for (let item = focusedItem; item && focusedSection < 0; item = item.parent) {
                const row = item as HistoryRow;
                if (!row)
                    continue;
                focusedSession = screen.view.sessionAt(row.index);
                focusedSection = row.sectionOf(focusedItem);
                focusReason = (focusedItem as PlainButton)?.focusReason ?? Qt.OtherFocusReason;
            }
        }
        function returnFocus(): void {
            const row = itemAtIndex(screen.view.rowOf(focusedSession)) as HistoryRow;
            if (focusedSection >= 0 && row)
                row.focusSection(focusedSection, focusReason);
        }
        function returnToPlace(): void {
            forceLayout();
            const index = screen.view.rowOf(placeSession);
            if (index >= 0)
                positionViewAtIndex(index, ListView.Beginning);
            const row = itemAtIndex(index) as HistoryRow;
            const y = placeOffset + (row ? row.y + row.cardTop : originY);
            scrollTo(y);
            returnFocus();
            scrollTo(y); // It may have been scrolled away from.
            isPlaceNoted = false;
        }
        function reveal(item: Item): void {
            const y = item.mapToItem(contentItem, 0, 0).y;
            if (y < contentY)
                scrollTo(y - 8);
            else if (y + item.height > contentY + height)
                scrollTo(y + item.height + 8 - height);
        }

        anchors.fill: parent
        anchors.leftMargin: Layout.spacingMedium
        anchors.rightMargin: Layout.spacingMedium
        topMargin: above.height
        bottomMargin: below.height
        onTopMarginChanged: {
            if (contentY <= originY - heededTopMargin)
                contentY = originY - topMargin;
            heededTopMargin = topMargin;
        }
        model: screen.view.rows
        currentIndex: -1
        cacheBuffer: 600
        // Rows in the buffer come when there is time. The next one is always there for the keyboard.
        displayMarginBeginning: 200
        displayMarginEnd: 200
        boundsBehavior: Flickable.DragOverBounds
        keyNavigationEnabled: false
        Accessible.role: Accessible.List
        Accessible.name: head.title
        Keys.forwardTo: [scroller]

        onActiveItemChanged: {
            if (activeItem)
                focusedItem = activeItem;
        }
        onFocusedItemChanged: {
            for (let item = focusedItem; item; item = item.parent) {
                if (item === list.contentItem || item === below) {
                    list.reveal(focusedItem);
                    break;
                }
            }
        }
        onDragEnded: {
            if (list.verticalOvershoot < -screen.refreshDistance)
                screen.view.loadHistoryEntries();
        }

        delegate: HistoryRow {
            width: list.width
            onExpansionChanged: (section, isExpanded) =>
                screen.view.setExpanded(index, section, isExpanded)
        }

        // The list's own header and footer would be made outside of this document's context, which
        // its bound components do not allow.
        Column {
            id: above

            parent: list.contentItem
            y: list.originY - height
            width: list.width
            topPadding: Layout.spacingMedium
            bottomPadding: Layout.spacingLarge
            spacing: Layout.spacingLarge

            PageHead {
                id: head

                width: parent.width
                title: "Session History"
                subtitle: "Your personal thoughts and reflections over time"
            }
            EmptyHistory {
                width: parent.width
                visible: screen.view.isEmpty
            }
        }
        // Beside the rows and not among them: Tab and assistive tools come to it after the last one.
        Item {
            id: below

            parent: list
            y: list.originY + list.contentHeight - list.contentY
            width: list.width
            height: Layout.spacingMedium + (more.visible ? more.height + 40 : 0)

            // It leads nowhere: all entries are in the list.
            BorderedButton {
                id: more

                anchors.horizontalCenter: parent.horizontalCenter
                y: 20
                visible: screen.view.showsLoadMore
                text: "Load More"
            }
        }
    }

    // A load that finds another history replaces all rows. The list's own position is a guess from the
    // rows in sight, which says little where heights differ.
    Connections {
        target: screen.view.rows

        function onModelAboutToBeReset(): void {
            list.notePlace();
        }
    }
    Connections {
        target: screen.view

        function onHistoryEntriesChanged(): void {
            if (list.isPlaceNoted)
                list.returnToPlace();
        }
    }

    // Comes down with a drag past the top, and takes the accent colour where letting go loads.
    SymbolIcon {
        id: refreshSign

        readonly property real pull: list.dragging ? Math.max(0, -list.verticalOvershoot) : 0

        anchors.horizontalCenter: parent.horizontalCenter
        y: pull - height - 4
        visible: pull > 0
        symbol: "arrow.clockwise"
        size: 20
        color: pull > screen.refreshDistance ? Colors.accent : Colors.secondaryLabel
        opacity: Math.min(1, pull / screen.refreshDistance)
        rotation: 360 * opacity
    }
    Scroller {
        id: scroller

        anchors.fill: parent
        view: list
        onAsked: y => list.scrollTo(y)
    }
}
