pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The first thing a new user sees: two pages between their dots and their buttons.
Rectangle {
    id: screen

    required property OnboardingView view

    color: Colors.background

    Row {
        id: dots

        anchors.horizontalCenter: parent.horizontalCenter
        y: Layout.spacingMedium
        spacing: 8

        Repeater {
            model: 2

            Rectangle {
                required property int index

                width: 8
                height: 8
                radius: 4
                color: screen.view.currentScreen < index ? Colors.border : Colors.accent

                Behavior on color {
                    EaseInOutColor { duration: 350 }
                }
            }
        }
    }
    Item {
        anchors.top: dots.bottom
        anchors.topMargin: Layout.defaultSpacing
        anchors.bottom: buttons.top
        anchors.bottomMargin: Layout.defaultSpacing
        width: parent.width

        OnboardingPage {
            anchors.fill: parent
            isShown: !screen.view.isSetupShown

            WelcomePage {
                anchors.centerIn: parent
                width: parent.width
                appIcon: screen.view.appIcon
                hasIcon: screen.view.hasAppIcon
            }
        }
        OnboardingPage {
            anchors.fill: parent
            isShown: screen.view.isSetupShown

            SetupPage {
                anchors.fill: parent
                view: screen.view
            }
        }
    }
    FocusScope {
        id: buttons

        anchors.bottom: parent.bottom
        anchors.bottomMargin: Layout.spacingMedium
        x: Layout.spacingMedium
        width: parent.width - 2 * Layout.spacingMedium
        height: forward.implicitHeight

        SecondaryButton {
            visible: screen.view.currentScreen > 0
            text: "Back"
            onClicked: screen.view.goBack()
        }
        PrimaryButton {
            id: forward

            anchors.right: parent.right
            enabled: screen.view.canGoForward
            text: screen.view.forwardText
            onClicked: screen.view.goForward()
        }
    }
    Alert {
        isPresented: screen.view.showingAPIKeyAlert
        title: "Setup Complete"
        message: "Your API key has been saved and TARNE is ready to help you focus!"
        buttonText: "Start Using TARNE"
        onAccepted: screen.view.startUsing()
    }
}
