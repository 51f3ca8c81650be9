pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// What the history shows before its first load.
Column {
    id: empty

    topPadding: Layout.spacingLarge
    bottomPadding: Layout.spacingLarge
    spacing: 20

    SymbolIcon {
        anchors.horizontalCenter: parent.horizontalCenter
        symbol: "book.closed"
        size: 48
        color: Colors.withOpacity(Colors.secondaryLabel, 0.6)
    }
    Column {
        width: parent.width
        spacing: 8

        PlainText {
            width: parent.width
            text: "No session history yet"
            font: Typography.weighted(Typography.systemTitle3, Font.Medium)
            color: Colors.label
            horizontalAlignment: Text.AlignHCenter
        }
        PlainText {
            width: parent.width
            text: "Complete your first focus session to see your feedback history here"
            font: Typography.systemBody
            color: Colors.secondaryLabel
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
    }
}
