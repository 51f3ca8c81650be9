pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The second tab: what the history says, in four cards. There is nothing to press.
Rectangle {
    id: screen

    required property InsightsView view

    readonly property string navigationTitle: screen.view.navigationTitle

    color: Colors.background
    Accessible.role: Accessible.Pane
    Accessible.name: screen.navigationTitle
    Keys.forwardTo: [column]

    PageColumn {
        id: column

        anchors.fill: parent
        focus: true
        title: "Insights"
        subtitle: "Discover patterns and trends in your focus sessions"

        FocusStreakCard {
            width: parent.width
            view: screen.view
        }
        Row {
            id: halves

            readonly property real half: (width - spacing) / 2
            readonly property real higher: Math.max(trends.implicitHeight, times.implicitHeight)

            width: parent.width
            spacing: Layout.spacingMedium

            GoalCompletionTrendsCard {
                id: trends

                width: halves.half
                height: halves.higher
                view: screen.view
            }
            MostProductiveTimesCard {
                id: times

                width: halves.half
                height: halves.higher
                view: screen.view
            }
        }
        FocusJourneyHeatmap {
            width: parent.width
            view: screen.view
        }
    }
}
