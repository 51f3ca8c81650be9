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
    color: Colors.hex("FAFAFA")
    Accessible.role: Accessible.Pane
    Accessible.name: title.text

    Rectangle {
        id: header

        width: parent.width
        height: Math.max(titles.implicitHeight, buttons.implicitHeight) + 2 * 20

        Column {
            id: titles

            x: 24
            anchors.verticalCenter: parent.verticalCenter
            spacing: 4

            PlainText {
                id: title

                text: "Schedule"
                font: Typography.heading1
                Accessible.role: Accessible.Heading
            }
            PlainText {
                text: "Plan your focus sessions"
                color: Colors.secondaryText
            }
        }
        Row {
            id: buttons

            anchors.right: parent.right
            anchors.rightMargin: 24
            anchors.verticalCenter: parent.verticalCenter
            spacing: 12

            GradientButton {
                text: "New Goal"
                symbol: "plus"
                horizontalPadding: 20
                verticalPadding: 12
                onClicked: screen.view.openAddGoal()
            }
            CloseButton {
                text: "Close schedule"
                onClicked: screen.view.close()
            }
        }
        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: 1
            color: Colors.hex("E5E7EB")
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
        color: Colors.hex("E5E7EB")
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
