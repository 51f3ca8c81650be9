pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The schedule's right side: the selected day and its goals.
Item {
    id: pane

    required property ScheduleView view

    Rectangle {
        id: header

        width: parent.width
        height: texts.implicitHeight + 2 * 20
        color: Colors.white

        Column {
            id: texts

            x: 24
            anchors.verticalCenter: parent.verticalCenter
            spacing: 4

            PlainText {
                text: pane.view.selectedDateText
                font: Typography.system(20, Font.DemiBold)
                color: Colors.hex("1F2937")
                Accessible.role: Accessible.Heading
            }
            PlainText {
                text: pane.view.goalsCountText
                font: Typography.system(14)
                color: Colors.hex("6B7280")
            }
        }
        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: 1
            color: Colors.hex("E5E7EB")
        }
    }
    ListView {
        id: list

        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: pane.view.goals
        delegate: ScheduledGoalRow {
            // The keyboard goes on to rows that are not in view.
            onIsFocusedChanged: {
                if (isFocused)
                    list.positionViewAtIndex(index, ListView.Contain);
            }
            width: ListView.view.width
            onToggled: pane.view.toggleGoalCompletion(index)
            onDeleted: pane.view.deleteGoal(index)
        }
        // The empty state scrolls as the rows do where it does not fit.
        bottomMargin: noGoals.visible ? noGoals.implicitHeight : 0

        NoGoalsScheduled {
            id: noGoals

            width: list.width
            visible: list.count === 0
            onAddGoal: pane.view.openAddGoal()
        }
    }
}
