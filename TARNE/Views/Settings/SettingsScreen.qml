pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The fourth tab: the server's status, the API key, and what the application does with both.
Rectangle {
    id: screen

    required property SettingsView view

    color: Colors.background
    Keys.forwardTo: [column]

    PageColumn {
        id: column

        anchors.fill: parent
        focus: true
        title: "Settings"
        subtitle: "Configure your AI and server preferences"

        Column {
            width: parent.width
            spacing: 20

            ServerStatusBox {
                width: parent.width
                view: screen.view
            }
            ApiKeyBox {
                width: parent.width
                view: screen.view
            }
            GroupBox {
                width: parent.width
                title: "About"
                contentSpacing: 8

                SettingsNote {
                    text: "TARNE uses AI to intelligently classify web content based on your session goals."
                }
                SettingsNote {
                    text: "• Server runs locally for privacy"
                }
                SettingsNote {
                    text: "• No data is sent to external servers except Gemini AI for classification"
                }
                SettingsNote {
                    text: "• Your API key is stored securely in macOS Keychain"
                }
            }
        }
    }

    Alert {
        isPresented: screen.view.showingAPIKeyAlert
        title: "API Key Saved"
        message: "Your API key has been saved and the server will restart to use the new configuration."
        buttonText: "OK"
        onAccepted: screen.view.closeAlert()
    }
}
