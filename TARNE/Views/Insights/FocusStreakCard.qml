pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// Days with sessions in a row: now, and at their best.
TitledCard {
    id: card

    required property InsightsView view

    symbol: "flame.fill"
    symbolColor: Colors.orange
    title: "Focus Streak"

    component Figure: PlainText {
        font: Typography.system(32, Font.Bold)
    }
    component Note: PlainText {
        font: Typography.caption
        color: Colors.secondaryText
    }

    Item {
        width: parent.width
        implicitHeight: Math.max(current.implicitHeight, longest.implicitHeight)

        Column {
            id: current

            spacing: 4

            Row {
                spacing: 4

                Figure {
                    text: card.view.currentStreak
                }
                SymbolIcon {
                    anchors.bottom: parent.bottom
                    symbol: "flame.fill"
                    size: 20
                    color: Colors.orange
                }
            }
            Note {
                text: "Current Streak"
            }
            Note {
                text: "days"
            }
        }
        Column {
            id: longest

            anchors.right: parent.right
            spacing: 4

            Row {
                anchors.right: parent.right
                spacing: 4

                SymbolIcon {
                    anchors.bottom: parent.bottom
                    symbol: "trophy.fill"
                    size: 20
                    color: Colors.yellow
                }
                Figure {
                    text: card.view.longestStreak
                }
            }
            Note {
                anchors.right: parent.right
                text: "Longest Streak"
            }
            Note {
                anchors.right: parent.right
                text: "days"
            }
        }
    }
}
