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
        Accessible.role: Accessible.Indicator
        Accessible.name: "Page " + (screen.view.currentScreen + 1) + " of 2"

        Repeater {
            model: 2

            Rectangle {
                required property int index

                width: 8
                height: 8
                radius: 4
                color: screen.view.currentScreen < index ? Colors.border : Colors.accent

                Behavior on color {
                    EaseInOut { time: 350 }
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

        FadingScope {
            anchors.fill: parent
            duration: 300
            isShown: !screen.view.isSetupShown

            ScrollColumn {
                anchors.fill: parent
                topPadding: Math.max(0, Math.round((height - welcomeScreen.implicitHeight) / 2))

                WelcomePage {
                    id: welcomeScreen

                    width: parent.width
                    appIcon: screen.view.appIcon
                }
            }
        }
        FadingScope {
            anchors.fill: parent
            duration: 300
            isShown: screen.view.isSetupShown

            SetupPage {
                id: setupScreen

                anchors.fill: parent
                view: screen.view
            }
        }
    }
    FocusScope {
        id: buttons

        focus: true
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Layout.spacingMedium
        x: Layout.spacingMedium
        width: parent.width - 2 * Layout.spacingMedium
        height: forward.implicitHeight

        FadingScope {
            width: back.width
            height: back.height
            isShown: screen.view.currentScreen > 0

            SecondaryButton {
                id: back

                text: "Back"
                // It goes with its page; what it leads to has the focus next.
                onClicked: {
                    const reason = back.visualFocus ? Qt.TabFocusReason : Qt.OtherFocusReason;
                    screen.view.goBack();
                    forward.forceActiveFocus(reason);
                }
            }
        }
        PrimaryButton {
            id: forward

            anchors.right: parent.right
            isAvailable: screen.view.canGoForward
            text: screen.view.forwardText
            label: FadingLabel {
                text: forward.text
                font: forward.font
                color: forward.look.textColor
            }
            focus: true
            onClicked: {
                const opensSetup = !screen.view.isSetupShown;
                screen.view.goForward();
                if (opensSetup)
                    setupScreen.forceActiveFocus();
            }
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
