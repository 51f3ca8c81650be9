pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The sheet in which a reflection is edited.
SheetPanel {
    id: panel

    required property EditReflectionSheet view

    readonly property real editorHeight: 120 + 2 * 8
    // What is inside is a little higher than the panel with the padding of 24 that it asks for; both
    // ends give.
    readonly property real verticalPadding:
        Math.min(24, (ownHeight - heading.implicitHeight - 20 - prompt.implicitHeight - 8
                      - editorHeight - 20 - save.implicitHeight) / 2)

    ownWidth: 500
    ownHeight: 300
    accessibleName: title.text

    header: Item {
        width: parent?.width ?? 0
        implicitHeight: panel.verticalPadding + heading.implicitHeight + 20

        Column {
            id: heading

            x: 24
            y: panel.verticalPadding
            spacing: 4

            PlainText {
                id: title

                text: "Edit Reflection"
                font: Typography.weighted(Typography.systemTitle2, Font.DemiBold)
                Accessible.role: Accessible.Heading
            }
            PlainText {
                text: panel.view.dateText
                font: Typography.systemCaption
                color: Colors.secondaryLabel
            }
        }
        BorderedButton {
            anchors.right: parent.right
            anchors.rightMargin: 24
            anchors.verticalCenter: heading.verticalCenter
            text: "Cancel"
            onClicked: panel.view.cancel()
        }
    }
    footer: Item {
        width: parent?.width ?? 0
        implicitHeight: 20 + save.implicitHeight + panel.verticalPadding

        BorderedButton {
            id: save

            anchors.right: parent.right
            anchors.rightMargin: 24
            y: 20
            isProminent: true
            text: "Save"
            onClicked: panel.view.save()
        }
    }

    Column {
        x: 24
        width: panel.width - 48
        spacing: 8

        PlainText {
            id: prompt

            text: "Your thoughts about this session:"
            font: Typography.systemHeadline
        }
        Rectangle {
            width: parent.width
            height: panel.editorHeight
            radius: 8
            color: Colors.textBackground
            border.color: Colors.separator
            border.width: 1

            TextEditor {
                anchors.fill: parent
                anchors.margins: 8
                focus: true
                font: Typography.systemBody
                accessibleName: prompt.text
                text: panel.view.reflection
                onTextEdited: text => panel.view.reflection = text
            }
        }
    }
}
