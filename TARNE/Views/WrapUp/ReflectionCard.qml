pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The reflection, to be read and, after "Edit", to be written.
FeedbackCard {
    id: card

    required property string reflection
    required property bool isEditing

    signal editingToggled
    signal reflectionEdited(string text)
    // The editor has come up, below what may be in sight.
    signal editorOpened(editor: Item)

    onIsEditingChanged: {
        if (isEditing)
            editorOpened(box);
    }

    padding: 16
    spacing: 12

    Item {
        width: parent.width
        height: title.implicitHeight

        SymbolTitle {
            id: title

            symbol: "note.text"
            text: "Your Reflection"
        }
        PlainButton {
            id: toggle

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: card.isEditing ? "Done" : "Edit"
            // The editor goes; it does not take the focus along.
            onClicked: {
                if (editor.isFocused)
                    toggle.forceActiveFocus();
                card.editingToggled();
            }

            contentItem: PlainText {
                text: toggle.text
                font: Typography.system(13, Font.Medium)
                color: Colors.accent
            }
        }
    }
    Rectangle {
        id: box

        width: parent.width
        height: Math.max(80, Math.min(editor.implicitHeight, 240)) + 2 * 8
        visible: card.isEditing
        radius: 8
        color: Colors.textBackground
        border.width: 1
        border.color: Colors.separator

        TextEditor {
            id: editor

            anchors.fill: parent
            anchors.margins: 8
            font: Typography.system(14)
            color: Colors.label
            accessibleName: "Your Reflection"
            text: card.reflection
            onTextEdited: text => card.reflectionEdited(text)
        }
    }
    LongText {
        width: parent.width
        visible: !card.isEditing
        text: card.reflection.length > 0 ? card.reflection : "No reflection provided"
        font: Typography.system(14)
        color: card.reflection.length > 0 ? Colors.label : Colors.secondaryLabel
        lineSpacing: 4
    }
}
