pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The sheet in which a goal of the schedule is entered: its day, its time and its text.
SheetPanel {
    id: panel

    required property AddGoalSheet view

    // It opens at its date, though the field at its end has the focus.
    revealsFocus: field.isUsed

    focus: true
    ownWidth: 650
    ownHeight: 800
    color: SchedulePalette.ground
    accessibleName: "New Goal"
    Component.onCompleted: panel.view.appear()

    header: AddGoalHeader {
        width: parent?.width ?? 0
        onClosed: panel.view.cancel()
    }
    footer: AddGoalActions {
        width: parent?.width ?? 0
        canAddGoal: panel.view.canAddGoal
        onCancelled: panel.view.cancel()
        onScheduled: panel.view.scheduleGoal()
    }

    Column {
        x: 24
        width: panel.width - 2 * 24
        topPadding: 24
        bottomPadding: 24
        spacing: 24

        AddGoalSection {
            width: parent.width
            symbol: "calendar"
            title: "Date"

            GraphicalDatePicker {
                x: 12
                width: parent.width - 2 * 12
                calendar: panel.view.calendar
                accent: SchedulePalette.accent
            }
        }
        AddGoalSection {
            width: parent.width
            symbol: "clock"
            title: "Time"

            Item {
                width: parent.width
                implicitHeight: Math.max(picker.height * picker.scale, note.height)

                CompactTimePicker {
                    id: picker

                    anchors.verticalCenter: parent.verticalCenter
                    transformOrigin: Item.Left
                    scale: 1.05
                    fields: panel.view.timeFields
                    accent: SchedulePalette.accent
                }
                ReminderNote {
                    id: note

                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                }
            }
        }
        AddGoalSection {
            width: parent.width
            symbol: "target"
            title: "Goal"

            GoalField {
                id: field

                width: parent.width
                view: panel.view
            }
        }
    }
}
