pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The planning screen, meant for a frame of 900 by 700. Nothing in the program presents it.
Rectangle {
    id: screen

    required property ScheduleView view

    implicitWidth: 900
    implicitHeight: 700
    color: SchedulePalette.ground
    Accessible.role: Accessible.Pane
    Accessible.name: header.title

    ScheduleHeader {
        id: header

        width: parent.width
        title: "Schedule"
        titleFont: Typography.heading1
        titleColor: Colors.primaryText
        subtitle: "Plan your focus sessions"
        subtitleFont: Typography.body
        subtitleColor: Colors.secondaryText

        GradientButton {
            text: "New Goal"
            symbol: "plus"
            horizontalPadding: 20
            verticalPadding: 12
            scale: 1
            onClicked: screen.view.openAddGoal()

            // Tied to nothing that changes, so it never runs. It is meant to be like this.
            Behavior on scale {
                enabled: false
                EaseInOut { time: 150 }
            }
        }
        CloseButton {
            accessibleLabel: "Close schedule"
            onClicked: screen.view.close()
        }
    }
    ScheduleSidebar {
        id: sidebar

        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        width: 420
        view: screen.view
    }
    Rectangle {
        id: rule

        anchors.left: sidebar.right
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        width: 1
        color: SchedulePalette.rule
    }
    ScheduledGoalsPane {
        anchors.left: rule.right
        anchors.right: parent.right
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        view: screen.view
    }

    Sheet {
        isPresented: screen.view.showingAddGoal
        content: Component {
            AddGoalPanel {
                view: screen.view.addGoalSheet
            }
        }
    }
}
