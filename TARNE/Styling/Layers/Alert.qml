pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A modal message over the window while `isPresented`. Return presses its default button, or the one
// that Tab has reached; only its buttons close it.
Item {
    id: alert

    property bool isPresented: false
    required property string title
    required property string message
    // The default button.
    required property string buttonText
    // A second button, where there is a choice.
    property string otherButtonText

    signal accepted
    signal dismissed

    Sheet {
        isPresented: alert.isPresented
        content: FocusScope {
            width: 300
            height: column.implicitHeight + 40
            Accessible.role: Accessible.AlertMessage
            Accessible.name: alert.title
            Accessible.description: alert.message
            // The key that brought the alert up may still be held.
            Keys.onReturnPressed: event => {
                if (!event.isAutoRepeat)
                    alert.accepted();
            }
            Keys.onEnterPressed: event => {
                if (!event.isAutoRepeat)
                    alert.accepted();
            }

            ShadowedBox {
                anchors.fill: parent
                color: Colors.regularMaterial
                cornerRadius: 12
                shadowColor: Colors.withOpacity(Colors.black, 0.25)
                shadowRadius: 24
                shadowOffset: 8
            }
            Column {
                id: column

                x: 20
                y: 20
                width: parent.width - 40
                spacing: 10

                PlainText {
                    width: parent.width
                    text: alert.title
                    font: Typography.systemHeadline
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                }
                PlainText {
                    width: parent.width
                    text: alert.message
                    font: Typography.system(12)
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                    bottomPadding: 6
                }
                BorderedButton {
                    width: parent.width
                    focus: true
                    isProminent: true
                    text: alert.buttonText
                    onClicked: alert.accepted()
                }
                BorderedButton {
                    width: parent.width
                    visible: text.length > 0
                    text: alert.otherButtonText
                    onClicked: alert.dismissed()
                }
            }
        }
    }
}
