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
    Accessible.role: Accessible.Pane
    Accessible.name: head.title

    ListView {
        id: list

        readonly property Item focusedItem: Window.activeFocusItem
        // The margin that the position was last set for.
        property real heededTopMargin: 0
        property real placeBeforeLoad: 0
        readonly property real highestY: originY - topMargin
        readonly property real lowestY:
            Math.max(highestY, originY + contentHeight + bottomMargin - height)

        function scrollTo(y: real): void {
            cancelFlick();
            contentY = Math.max(highestY, Math.min(y, lowestY));
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
        boundsBehavior: Flickable.DragOverBounds
        keyNavigationEnabled: false
        activeFocusOnTab: true
        Accessible.role: Accessible.List
        Accessible.name: head.title

        Keys.onPressed: event => {
            const page = list.height * 0.9;
            switch (event.key) {
            case Qt.Key_PageDown: list.scrollTo(list.contentY + page); break;
            case Qt.Key_PageUp: list.scrollTo(list.contentY - page); break;
            case Qt.Key_Down: list.scrollTo(list.contentY + 40); break;
            case Qt.Key_Up: list.scrollTo(list.contentY - 40); break;
            case Qt.Key_Home: list.positionViewAtBeginning(); list.scrollTo(list.highestY); break;
            case Qt.Key_End: list.positionViewAtEnd(); list.scrollTo(list.lowestY); break;
            default: return;
            }
            event.accepted = true;
        }
        onFocusedItemChanged: {
            for (let item = focusedItem; item; item = item.parent) {
                if (item === list.contentItem) {
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
        Item {
            id: below

            parent: list.contentItem
            y: list.originY + list.contentHeight
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

    // A load replaces all rows; the reader stays at the same place.
    Connections {
        target: screen.view.rows

        function onModelAboutToBeReset(): void {
            list.placeBeforeLoad = list.contentY;
        }
    }
    Connections {
        target: screen.view

        function onHistoryEntriesChanged(): void {
            list.forceLayout();
            list.scrollTo(list.placeBeforeLoad);
        }
    }

    Rectangle {
        anchors.right: parent.right
        anchors.rightMargin: 3
        y: list.visibleArea.yPosition * list.height
        width: 6
        height: Math.max(24, list.visibleArea.heightRatio * list.height)
        radius: 3
        color: Colors.tertiaryLabel
        visible: opacity > 0 && list.lowestY > list.highestY
        opacity: list.moving ? 1 : 0

        Behavior on opacity {
            NumberAnimation { duration: 200 }
        }
    }
}
