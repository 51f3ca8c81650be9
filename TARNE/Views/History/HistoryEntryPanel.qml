pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The card of one finished session.
Card {
    id: panel

    required property historyEntryCard card
    required property int expanded

    signal expansionChanged(section: int, isExpanded: bool)

    function sectionOf(item: Item): int {
        for (let index = 0; index < sections.count; ++index) {
            if ((sections.itemAt(index) as DisclosureSection)?.button === item)
                return index;
        }
        return -1;
    }
    function focusSection(section: int, reason: int): void {
        (sections.itemAt(section) as DisclosureSection)?.button.forceActiveFocus(reason);
    }

    color: Colors.controlBackground
    cornerRadius: 12
    shadowRadius: 0
    outlineColor: Colors.withOpacity(Colors.separator, 0.3)
    outlineWidth: 1
    spacing: 16
    Accessible.role: Accessible.ListItem
    Accessible.name: panel.card.name

    Item {
        width: parent.width
        implicitHeight: time.implicitHeight

        PlainText {
            id: time

            text: panel.card.time
            font: Typography.systemCaption
            color: Colors.secondaryLabel
        }
        Row {
            anchors.right: parent.right
            visible: panel.card.hasSummary
            spacing: 4

            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                symbol: panel.card.summarySymbol
                size: 12
                color: panel.card.summaryColor
            }
            PlainText {
                text: panel.card.summaryText
                font: Typography.weighted(Typography.systemCaption, Font.Medium)
                color: Colors.secondaryLabel
            }
        }
    }
    Column {
        id: goals

        width: parent.width
        spacing: 8

        Repeater {
            model: panel.card.goals

            Item {
                id: goal

                required property historyGoalRow modelData

                width: goals.width
                implicitHeight: goalText.implicitHeight

                SymbolIcon {
                    x: 2
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: goal.modelData.symbol
                    size: 12
                    weight: Font.Medium
                    color: goal.modelData.color
                }
                LongText {
                    id: goalText

                    x: 24
                    width: goal.width - 24
                    text: goal.modelData.text
                    font: Typography.system(14)
                    color: Colors.label
                }
            }
        }
    }
    Column {
        id: feedback

        width: parent.width
        // A column leaves out what has no height, and its spacing with it. The goals keep their place
        // where there are none.
        topPadding: panel.card.hasSummary ? 0 : panel.spacing
        spacing: 12

        Repeater {
            id: sections

            model: panel.card.feedback

            DisclosureSection {
                id: section

                required property int index
                required property historyFeedbackRow modelData

                width: feedback.width
                symbol: modelData.icon
                title: modelData.title
                isExpanded: (panel.expanded & (1 << index)) !== 0
                onIsExpandedChanged: panel.expansionChanged(index, isExpanded)
                content: LongText {
                    text: section.modelData.content
                    font: Typography.system(13)
                    lineSpacing: 2
                    color: Colors.label
                }
            }
        }
        ReflectionSection {
            width: parent.width
            card: panel.card
        }
    }
    PlainText {
        anchors.right: parent?.right
        text: panel.card.duration
        font: Typography.systemCaption
        color: Colors.secondaryLabel
    }
}
