pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// How the goals of the last 30 days ended.
PageCard {
    id: card

    required property InsightsView view

    component Share: Item {
        id: share

        required property string symbol
        required property string label
        required property int percentage
        required property color color

        width: parent?.width ?? 0
        implicitHeight: name.implicitHeight

        SymbolIcon {
            id: mark

            anchors.verticalCenter: parent.verticalCenter
            symbol: share.symbol
            size: 14
            color: share.color
        }
        PlainText {
            id: name

            anchors.left: mark.right
            anchors.leftMargin: Layout.defaultSpacing
            anchors.right: value.left
            anchors.rightMargin: Layout.defaultSpacing
            text: share.label
            elide: Text.ElideRight
        }
        PlainText {
            id: value

            anchors.right: parent.right
            text: share.percentage + "%"
            font: Typography.emphasis
            color: share.color
        }
    }

    CardHeading {
        width: parent.width
        title: "Goal Completion Trends"
        subtitle: "Last 30 days"
    }
    Column {
        width: parent.width
        spacing: Layout.spacingSmall

        Share {
            symbol: "checkmark.circle.fill"
            label: "Completed"
            percentage: card.view.completedPercentage
            color: Colors.green
        }
        Share {
            symbol: "minus.circle.fill"
            label: "Partially Completed"
            percentage: card.view.partiallyCompletedPercentage
            color: Colors.orange
        }
        Share {
            symbol: "xmark.circle.fill"
            label: "Not Completed"
            percentage: card.view.notCompletedPercentage
            color: Colors.red
        }
    }
}
