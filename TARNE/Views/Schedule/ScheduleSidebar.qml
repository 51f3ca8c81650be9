pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The schedule's left side: a calendar without limits, and two counters.
Rectangle {
    id: sidebar

    required property ScheduleView view

    // What is left for the calendar beside the other parts and the spaces between them.
    readonly property real offeredHeight: height - 3 * 28 - 20 - title.height - overview.height
    // A week of a very tall window is not pulled apart further than this.
    readonly property real largestHeight: calendar.implicitHeight + 6 * 12

    color: Colors.white

    ScrollColumn {
        anchors.fill: parent
        horizontalPadding: 28
        topPadding: 28
        bottomPadding: 28
        spacing: 28

        Column {
            width: parent.width
            spacing: 20

            SymbolTitle {
                id: title

                symbol: "calendar"
                symbolColor: SchedulePalette.accent
                text: "Calendar"
                font: Typography.system(18, Font.DemiBold)
                color: SchedulePalette.text
            }
            GraphicalDatePicker {
                id: calendar

                x: 8
                width: parent.width - 2 * 8
                height: Math.max(implicitHeight, Math.min(sidebar.offeredHeight, sidebar.largestHeight))
                calendar: sidebar.view.calendar
                accent: SchedulePalette.accent
            }
        }
        Column {
            id: overview

            width: parent.width
            spacing: 16

            SymbolTitle {
                symbol: "chart.bar.fill"
                symbolColor: SchedulePalette.accent
                text: "Overview"
                font: Typography.system(16, Font.DemiBold)
                color: SchedulePalette.text
            }
            Column {
                width: parent.width
                spacing: 12

                EnhancedStatRow {
                    width: parent.width
                    icon: "calendar.badge.clock"
                    label: "Today's Goals"
                    value: sidebar.view.todaysCount
                    color: SchedulePalette.green
                }
                EnhancedStatRow {
                    width: parent.width
                    icon: "clock.arrow.circlepath"
                    label: "Upcoming"
                    value: sidebar.view.upcomingCount
                    color: SchedulePalette.red
                }
            }
        }
    }
}
