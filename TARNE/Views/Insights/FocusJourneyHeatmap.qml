pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// A year of sessions, a column a week. Its geometry is fixed; where the card is narrower its oldest
// weeks are cut off, and today is in sight. A month's text is 13 columns of 17 wide. The row's own
// spacing is 2, so each text stands 2 further to the right of its week than the one before it, the
// fourth 6.
PageCard {
    id: card

    required property InsightsView view

    readonly property real monthHeight: Typography.grown(10)

    component Label: PlainText {
        font: Typography.system(10)
        color: Colors.secondaryText
    }

    CardHeading {
        width: parent.width
        title: "Your Focus Journey"
        subtitle: "Past year of Stillhour sessions"
    }
    Item {
        width: parent.width
        implicitHeight: gridColumn.implicitHeight

        Column {
            id: days

            width: Typography.grown(30)
            spacing: 2

            Item {
                width: 1
                height: card.monthHeight + 2
            }
            Repeater {
                model: card.view.dayLabels

                Label {
                    required property string modelData

                    width: days.width
                    height: 15
                    text: modelData
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    Accessible.ignored: text.length === 0
                }
            }
        }
        Item {
            id: year

            x: days.width
            width: parent.width - x
            height: parent.height
            clip: grid.width > width

            Column {
                id: gridColumn

                x: Math.min(0, year.width - grid.width)
                spacing: 4

                Row {
                    spacing: 2

                    Repeater {
                        model: card.view.monthLabels

                        Label {
                            required property string modelData

                            width: 221
                            height: card.monthHeight
                            text: modelData
                            horizontalAlignment: Text.AlignLeft
                            verticalAlignment: Text.AlignVCenter
                        }
                    }
                }
                HeatmapGrid {
                    id: grid

                    view: card.view
                }
            }
        }
    }
    Item {
        width: parent.width
        implicitHeight: total.implicitHeight

        Row {
            spacing: Layout.defaultSpacing

            Label {
                text: "Less"
            }
            Row {
                anchors.verticalCenter: parent.verticalCenter
                spacing: 2

                Repeater {
                    model: 5

                    Rectangle {
                        required property int index

                        width: 10
                        height: 10
                        radius: 2
                        color: card.view.legendColor(index)
                    }
                }
            }
            Label {
                text: "More"
            }
        }
        Label {
            id: total

            anchors.right: parent.right
            text: card.view.totalSessionsThisYear + " sessions in the last year"
        }
    }
}
