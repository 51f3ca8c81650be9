pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The sheet that ends a session: a verdict for each goal and a written reflection. Above it comes
// the feedback.
SheetPanel {
    id: sheet

    required property SessionReflectionView view

    readonly property real margin: 40

    focus: true
    ownWidth: 520
    ownHeight: 600
    hasDragIndicator: true
    accessibleName: head.title

    header: SheetHead {
        id: head

        margin: sheet.margin
        topPadding: 32
        bottomPadding: 32
        title: "How did you do with your goals?"
        font: Typography.system(22, Font.DemiBold)
        color: Colors.label
        onClosed: sheet.view.close()
    }

    Column {
        x: sheet.margin
        width: sheet.width - 2 * sheet.margin
        bottomPadding: 20

        Column {
            width: parent.width
            visible: sheet.view.hasGoals
            bottomPadding: 48
            spacing: 32

            Repeater {
                model: sheet.view.goals

                GoalEvaluationRow {
                    required property int index

                    width: parent?.width ?? 0
                    view: sheet.view
                    onStatusChange: status => sheet.view.rate(index, status)
                }
            }
        }
        Item {
            width: parent.width
            height: 1 + 32
            visible: sheet.view.hasGoals

            Separator {
                width: parent.width
                opacity: 0.3
            }
        }
        Column {
            width: parent.width
            topPadding: 8
            spacing: 16

            PlainText {
                id: reflectionLabel

                text: "Reflection"
                font: Typography.system(16, Font.Medium)
                color: Colors.label
            }
            RoundedBox {
                width: parent.width
                height: Math.max(120, Math.min(editor.implicitHeight, 240))
                radius: 8
                color: Colors.textBackground
                outlineWidth: 0.5
                outlineColor: Colors.separator

                TextEditor {
                    id: editor

                    anchors.fill: parent
                    horizontalInset: 12
                    verticalInset: 10
                    font: Typography.system(14)
                    color: Colors.label
                    lineSpacing: 3
                    accessibleName: reflectionLabel.text
                    text: sheet.view.reflection
                    onTextEdited: text => sheet.view.reflection = text
                }
            }
        }
    }

    footer: Rectangle {
        width: parent?.width ?? 0
        implicitHeight: 24 + complete.implicitHeight + 24
        radius: sheet.cornerRadius
        color: sheet.color

        Row {
            anchors.right: parent.right
            anchors.rightMargin: sheet.margin
            anchors.verticalCenter: parent.verticalCenter
            spacing: 16

            CommandReturnHint {
                anchors.verticalCenter: parent.verticalCenter
            }
            CircleButton {
                id: complete

                symbol: "checkmark"
                text: "Complete reflection"
                isReady: sheet.view.canComplete
                onClicked: sheet.view.completeReflection()
            }
        }
    }

    Sheet {
        isPresented: sheet.view.showingFeedback
        document: Qt.resolvedUrl("SessionFeedbackSheet.qml")
        view: sheet.view.feedback
    }
}
