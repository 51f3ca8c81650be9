pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A page that scrolls, under its title and what it is for. It is a stop of the Tab key, so that keys
// can scroll it.
ScrollColumn {
    id: page

    required property string title
    required property string subtitle

    topPadding: Layout.spacingMedium
    bottomPadding: Layout.spacingMedium
    horizontalPadding: Layout.spacingMedium
    spacing: Layout.spacingLarge
    activeFocusOnTab: true
    Accessible.role: Accessible.Pane
    Accessible.name: page.title

    PageHead {
        width: parent.width
        title: page.title
        subtitle: page.subtitle
    }
}
