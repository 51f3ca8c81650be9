pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The two ways on from the feedback, neither of them ever disabled.
Rectangle {
    id: footer

    required property SessionFeedbackView view
    required property real margin
    property real cornerRadius: 0

    implicitHeight: 20 + finish.implicitHeight + 20
    radius: cornerRadius

    PlainButton {
        id: share

        x: footer.margin
        anchors.verticalCenter: parent.verticalCenter
        horizontalPadding: 16
        verticalPadding: 10
        cornerRadius: 8
        ground: footer.color
        text: "Save & Share"
        onClicked: footer.view.saveAndShareFeedback()

        background: Rectangle {
            radius: 8
            color: Colors.secondaryFill
        }
        contentItem: Row {
            spacing: 6

            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                symbol: "square.and.arrow.up"
                size: 13
                weight: Font.Medium
                color: Colors.label
            }
            // Whole points, so that neither button is drawn beyond its edge.
            PlainText {
                width: Math.ceil(implicitWidth)
                text: share.text
                font: Typography.system(14, Font.Medium)
                color: Colors.label
            }
        }
    }
    PlainButton {
        id: finish

        anchors.left: share.right
        anchors.leftMargin: 12
        anchors.right: parent.right
        anchors.rightMargin: footer.margin
        anchors.verticalCenter: parent.verticalCenter
        verticalPadding: 12
        cornerRadius: 8
        ground: footer.color
        text: "Finish session"
        onClicked: footer.view.finishSession()

        background: Rectangle {
            radius: 8
            color: Colors.accent
        }
        contentItem: FinishLabel {}
    }

    component FinishLabel: Item {
        implicitHeight: label.implicitHeight

        Row {
            id: label

            anchors.centerIn: parent
            spacing: 8

            PlainText {
                text: "Finish Session"
                font: Typography.system(15, Font.Medium)
                color: Colors.white
            }
            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                symbol: "checkmark"
                size: 13
                weight: Font.DemiBold
                color: Colors.white
            }
        }
    }
}
