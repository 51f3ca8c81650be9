pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// The round button at the end of a sheet: grey and a little smaller while something is missing.
Item {
    id: circle

    required property string symbol
    required property string text
    property bool isReady: true

    signal clicked

    implicitWidth: 36
    implicitHeight: 36
    scale: isReady ? 1 : 0.95

    Behavior on scale {
        EaseInOut { time: 200 }
    }

    // A disabled button has no pointer shape, and an editor's behind it would show through.
    HoverHandler {
        cursorShape: Qt.ArrowCursor
    }
    IconButton {
        anchors.fill: parent
        isAvailable: circle.isReady
        ground: Colors.regularMaterial
        cornerRadius: width / 2
        accessibleLabel: circle.text
        symbol: circle.symbol
        size: 15
        weight: Font.DemiBold
        color: Colors.white
        onClicked: circle.clicked()

        background: RoundedBox {
            radius: width / 2
            color: circle.isReady ? Colors.accent : Colors.quaternaryLabel

            Behavior on color {
                EaseInOut { time: 200 }
            }
        }
    }
}
