pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A field for a secret and the eye that shows or hides it. What is in it is typed, pasted and shown
// by dots; assistive tools learn that it is a password field and never what it holds, also while it
// is shown.
Row {
    id: secure

    property alias text: field.text
    property alias placeholderText: field.placeholderText
    property alias outlineColor: field.outlineColor
    property alias textColor: field.color
    property alias font: field.font
    readonly property bool isTextFieldFocused: field.activeFocus
    // Whether the value can be read. The eye asks for a change with `visibilityToggled`.
    property bool isValueVisible: false
    property color eyeColor: Colors.secondaryLabel

    signal textEdited(string text)
    signal visibilityToggled

    spacing: Layout.defaultSpacing

    TextField {
        id: field

        width: secure.width - eye.width - secure.spacing
        echoMode: secure.isValueVisible ? TextInput.Normal : TextInput.Password
        passwordCharacter: "•"
        // Shown or not, a key is not for an input method to complete, correct or remember.
        inputMethodHints: Qt.ImhSensitiveData | Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
        // Neither a key nor its dots have anything to shape, and a megabyte would take seconds.
        font.family: Typography.body.family
        font.pixelSize: Typography.body.pixelSize
        font.preferShaping: false
        onTextEdited: secure.textEdited(text)

        SecretGuard {
            target: field
        }
    }
    IconButton {
        id: eye

        anchors.verticalCenter: parent.verticalCenter
        symbol: secure.isValueVisible ? "eye.slash" : "eye"
        accessibleLabel: secure.isValueVisible ? "Hide key" : "Show key"
        color: secure.eyeColor
        onClicked: secure.visibilityToggled()
    }
}
