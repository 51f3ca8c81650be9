pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The setup page: how to enable the browser extension, and the API key.
PageColumn {
    id: page

    required property OnboardingView view

    title: "Complete Setup"
    subtitle: "Configure Safari extension and AI to start focusing"

    TitledCard {
        width: parent.width
        symbol: "safari"
        symbolColor: Colors.blue
        title: "Safari Extension Setup"

        Column {
            width: parent.width
            spacing: Layout.spacingSmall

            SetupStep {
                number: "1."
                text: "Open Safari so it's the active app"
            }
            SetupStep {
                number: "2."
                text: "In the top menu bar, click Safari → Settings (⌘,)"
            }
            SetupStep {
                number: "3."
                text: "Go to the Extensions tab"
            }
            SetupStep {
                number: "4."
                text: "Check (✓) TARNEExtension to enable it"
            }
        }
    }
    TitledCard {
        width: parent.width
        symbol: "brain.head.profile"
        symbolColor: Colors.purple
        title: "Gemini AI Configuration"

        Column {
            width: parent.width
            spacing: 12

            FieldLabel {
                text: "API Key"
            }
            ApiKeyField {
                id: field

                text: page.view.apiKey
                isValueVisible: page.view.isAPIKeyVisible
                textColor: Colors.black
                outlineColor: field.isTextFieldFocused ? Colors.blue : Colors.black
                eyeColor: Colors.secondaryText
                onTextEdited: text => page.view.apiKey = text
                onVisibilityToggled: page.view.toggleAPIKeyVisibility()
            }
            SecondaryButton {
                minimumWidth: 130
                symbol: "link"
                text: "Get Free API Key"
                onClicked: page.view.openKeyPage()
            }
            PlainText {
                width: parent.width
                text: "Click the button above to open the Gemini page. Press Get Gemini API, and if it asks, just make or pick a project. You'll then see your key—copy it and paste it here. This key lets the app connect to Gemini to power the AI features. Don't worry, the key stays safe on your Mac using the built-in Keychain."
                font: Typography.caption
                color: Colors.secondaryText
                wrapMode: Text.Wrap
            }
        }
    }
}
