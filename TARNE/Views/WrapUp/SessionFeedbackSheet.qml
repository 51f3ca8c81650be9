pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The sheet that closes a session: how the goals went, the coaching, the reflection once more.
SheetPanel {
    id: sheet

    required property SessionFeedbackView view

    readonly property real margin: 32

    focus: true
    ownWidth: 580
    ownHeight: 700
    accessibleName: "Session Feedback"
    header: FeedbackHeader {
        width: parent?.width ?? 0
        view: sheet.view
        margin: sheet.margin
    }
    footer: FeedbackFooter {
        width: parent?.width ?? 0
        view: sheet.view
        margin: sheet.margin
        cornerRadius: sheet.cornerRadius
        color: sheet.color
    }

    FirstFrame {
        onDrawn: sheet.view.generateFeedback()
    }
    Column {
        x: sheet.margin
        width: sheet.width - 2 * sheet.margin
        bottomPadding: 20
        spacing: 24

        Column {
            width: parent.width
            visible: sheet.view.hasGoals
            spacing: 16

            Repeater {
                model: sheet.view.goals

                EnhancedGoalRow {
                    width: parent?.width ?? 0
                }
            }
        }
        Column {
            width: parent.width
            spacing: 20

            LoadingFeedbackCard {
                width: parent.width
                visible: sheet.view.panel === SessionFeedbackView.Loading
            }
            ErrorFeedbackCard {
                width: parent.width
                visible: sheet.view.panel === SessionFeedbackView.Error
                error: sheet.view.feedbackError
            }
            Repeater {
                model: sheet.view.panel === SessionFeedbackView.Sections ? sheet.view.sections : null

                FeedbackSectionCard {
                    width: parent?.width ?? 0
                }
            }
            ReflectionCard {
                width: parent.width
                reflection: sheet.view.reflection
                isEditing: sheet.view.isEditingReflection
                onEditingToggled: sheet.view.isEditingReflection = !sheet.view.isEditingReflection
                onReflectionEdited: text => sheet.view.reflection = text
                onEditorOpened: editor => sheet.show(editor)
            }
        }
        Item {
            width: parent.width
            height: 80
        }
    }
}
