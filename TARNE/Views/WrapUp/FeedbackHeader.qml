pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The top of the feedback sheet: its title, and how many of the goals are done.
Item {
    id: header

    required property SessionFeedbackView view
    required property real margin

    implicitHeight: 24 + Math.max(titles.implicitHeight, 20) + 16 + 1 + 20

    Column {
        id: titles

        x: header.margin
        y: 24
        width: header.width - 2 * header.margin - closeButton.width - 8
        spacing: 4

        PlainText {
            text: "Session Feedback"
            font: Typography.system(17, Font.Bold)
            color: Colors.label
            Accessible.role: Accessible.Heading
        }
        Item {
            width: parent.width
            height: progressText.implicitHeight
            visible: header.view.hasGoals

            PlainText {
                id: progressText

                text: header.view.progressText
                font: Typography.systemCaption
                color: Colors.secondaryLabel
            }
            ProgressBar {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                width: 80
                value: header.view.progressValue
                color: header.view.progressColor
                accessibleName: header.view.progressText
            }
        }
    }
    // That the coaching has come is only seen: nothing that has the focus changes.
    Item {
        anchors.fill: titles
        visible: header.view.panel === SessionFeedbackView.Sections
        Accessible.role: Accessible.Notification
        Accessible.name: "Your feedback is ready."
    }
    SheetCloseButton {
        id: closeButton

        anchors.right: parent.right
        anchors.rightMargin: header.margin
        anchors.verticalCenter: titles.verticalCenter
        onClicked: header.view.close()
    }
    Separator {
        x: header.margin
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 20
        width: header.width - 2 * header.margin
        opacity: 0.3
    }
}
