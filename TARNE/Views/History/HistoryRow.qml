pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// One row of the history: a session's card, under its group's label where it is the group's first.
Column {
    id: row

    required property int index
    required property historyEntryCard card
    required property string sectionLabel
    required property string sectionCount
    required property bool endsSection
    required property int expanded

    readonly property real cardTop: panel.y

    signal expansionChanged(section: int, isExpanded: bool)

    // The number of the coaching text whose row this is, or -1.
    function sectionOf(item: Item): int {
        return panel.sectionOf(item);
    }
    function focusSection(section: int, reason: int): void {
        panel.focusSection(section, reason);
    }

    bottomPadding: endsSection ? 24 : 12
    spacing: 16
    Component.onCompleted: HistoryRowOrder.put(row, row.index)

    Item {
        visible: row.sectionLabel.length > 0
        width: row.width
        implicitHeight: label.implicitHeight

        PlainText {
            id: label

            x: 4
            text: row.sectionLabel
            font: Typography.weighted(Typography.systemTitle3, Font.DemiBold)
            color: Colors.label
            Accessible.role: Accessible.Heading
        }
        PlainText {
            anchors.right: parent.right
            anchors.rightMargin: 4
            anchors.verticalCenter: parent.verticalCenter
            text: row.sectionCount
            font: Typography.systemCaption
            color: Colors.secondaryLabel
        }
    }
    HistoryEntryPanel {
        id: panel

        width: row.width
        card: row.card
        expanded: row.expanded
        onExpansionChanged: (section, isExpanded) => row.expansionChanged(section, isExpanded)
    }
}
