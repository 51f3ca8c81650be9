pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The schedule's call to action: a symbol and a white text on an indigo gradient with a shadow.
// Unavailable it is disabled and grey, without symbol and shadow; behind a sheet it keeps its look.
PlainButton {
    id: button

    property string symbol
    property real textSize: 15

    cornerRadius: 10

    background: Item {
        ShadowImage {
            anchors.fill: parent
            color: Colors.withOpacity(SchedulePalette.accent, 0.25 * button.wholeOpacity)
            cornerRadius: button.cornerRadius
            blurRadius: 8
            offsetY: 4
            opacity: button.isAvailable ? 1 : 0

            Behavior on opacity {
                EaseInOut { time: 200 }
            }
        }
        RoundedBox {
            anchors.fill: parent
            color: SchedulePalette.inactive
            radius: button.cornerRadius
        }
        RoundedBox {
            anchors.fill: parent
            color: SchedulePalette.accent
            bottomColor: Colors.hex("4338CA")
            radius: button.cornerRadius
            opacity: button.isAvailable ? 1 : 0

            Behavior on opacity {
                EaseInOut { time: 200 }
            }
        }
    }
    contentItem: Item {
        implicitWidth: content.implicitWidth
        implicitHeight: content.implicitHeight
        children: [content]
    }

    Row {
        id: content

        anchors.centerIn: parent

        // The symbol and the space behind it, which come and go together.
        Item {
            readonly property real fullWidth: icon.width + 8
            // How much of it is there.
            property real presence: button.isAvailable ? 1 : 0

            anchors.verticalCenter: parent.verticalCenter
            width: fullWidth * presence
            height: icon.height
            visible: button.isAvailable || presence > 0

            Behavior on presence {
                EaseInOut { time: 200 }
            }

            SymbolIcon {
                id: icon

                x: parent.width - parent.fullWidth
                opacity: parent.presence
                symbol: button.symbol
                size: 14
                weight: Font.DemiBold
                color: Colors.white
            }
        }
        ControlText {
            anchors.verticalCenter: parent.verticalCenter
            text: button.text
            font: Typography.system(button.textSize, Font.DemiBold)
            color: Colors.white
        }
    }
}
