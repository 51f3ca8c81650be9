pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The API key of the settings screen: its field, what saves it and where to get one.
GroupBox {
    id: box

    required property SettingsView view

    title: "Gemini AI Configuration"
    contentSpacing: 12

    FieldLabel {
        text: "API Key"
    }
    ApiKeyField {
        text: box.view.apiKey
        isValueVisible: box.view.isAPIKeyVisible
        onTextEdited: text => box.view.apiKey = text
        onVisibilityToggled: box.view.toggleAPIKeyVisibility()
    }
    Row {
        spacing: Layout.defaultSpacing

        BorderedButton {
            isProminent: true
            isAvailable: box.view.canSave
            text: "Save API Key"
            onClicked: box.view.saveAPIKey()
        }
        BorderedButton {
            text: "Get API Key"
            onClicked: box.view.openKeyPage()
        }
    }
    SettingsNote {
        text: "Get your free API key from Google AI Studio. The key is stored securely on your device."
    }
}
