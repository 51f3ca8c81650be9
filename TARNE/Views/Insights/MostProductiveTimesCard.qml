pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// In which periods of the day the sessions of the last 30 days ended.
PageCard {
    id: card

    required property InsightsView view

    CardHeading {
        width: parent.width
        title: "Most Productive Times"
        subtitle: "Last 30 days"
    }
    Column {
        id: periods

        width: parent.width
        spacing: Layout.spacingSmall

        Repeater {
            model: card.view.productivityTimes

            Item {
                id: row

                required property productivityTimeRow modelData

                width: periods.width
                implicitHeight: name.implicitHeight

                PlainText {
                    id: emoji

                    anchors.verticalCenter: parent.verticalCenter
                    text: row.modelData.icon
                    font: Typography.emoji(14)
                }
                PlainText {
                    id: name

                    anchors.left: emoji.right
                    anchors.leftMargin: Layout.defaultSpacing
                    anchors.right: value.left
                    text: row.modelData.period
                    elide: Text.ElideRight
                }
                PlainText {
                    id: value

                    anchors.right: parent.right
                    text: row.modelData.percentage + "%"
                    font: Typography.emphasis
                    color: Colors.accent
                }
            }
        }
    }
}
