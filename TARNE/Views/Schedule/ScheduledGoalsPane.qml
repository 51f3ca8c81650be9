pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Views

// The schedule's right side: the selected day and its goals.
Item {
    id: pane

    required property ScheduleView view

    ScheduleHeader {
        id: header

        width: parent.width
        title: pane.view.selectedDateText
        subtitle: pane.view.goalsCountText
    }
    ListView {
        id: list

        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        // It has the focus after the last goal was deleted.
        Accessible.role: Accessible.List
        Accessible.name: header.title
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

            // A child of the list would stand still.
            parent: list.contentItem
            width: list.width
            visible: list.count === 0
            onIsFocusedChanged: {
                if (isFocused)
                    list.contentY = Math.max(0, noGoals.implicitHeight - list.height);
            }
            onAddGoal: pane.view.openAddGoal()
        }
    }
}
