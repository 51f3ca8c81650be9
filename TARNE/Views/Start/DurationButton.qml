pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// One preset length. The selected one stands out: it is larger, filled, and has a glow.
StyledButton {
    id: button

    required property int minutes
    required property bool isSelected

    buttonStyle: isSelected ? ButtonStyles.primary : ButtonStyles.secondary
    text: button.minutes + " min"
    scale: isSelected ? 1.05 : 1
    lookDuration: 200
    Accessible.selectable: true
    Accessible.selected: isSelected

    Behavior on scale {
        EaseInOut { time: 200 }
    }

    FontMetrics {
        id: selectedLine

        font: Typography.weighted(Typography.bodyLarge, Font.Bold)
    }

    label: Column {
        anchors.centerIn: parent

        // As high in either font, so that all presets of a row stand at the same height.
        ControlText {
            anchors.horizontalCenter: parent.horizontalCenter
            height: Math.ceil(selectedLine.height)
            verticalAlignment: Text.AlignVCenter
            text: button.minutes
            font: button.isSelected ? Typography.weighted(Typography.bodyLarge, Font.Bold)
                                    : Typography.body
            color: button.look.textColor

            Behavior on color {
                EaseInOut { time: button.lookDuration }
            }
        }
        ControlText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "min"
            font: Typography.caption
            color: button.isSelected ? Colors.accent : Colors.secondaryText

            Behavior on color {
                EaseInOut { time: button.lookDuration }
            }
        }
    }

    Item {
        z: -2
        anchors.fill: parent
        opacity: button.isSelected ? button.look.opacity : 0

        Behavior on opacity {
            EaseInOut { time: 200 }
        }

        ShadowImage {
            anchors.fill: parent
            color: Colors.withOpacity(Colors.accent, 0.3)
            cornerRadius: Layout.cornerRadius
            blurRadius: 4
        }
        RoundedBox {
            anchors.fill: parent
            radius: Layout.cornerRadius
            color: Colors.withOpacity(Colors.accent, 0.1)
        }
    }
}
