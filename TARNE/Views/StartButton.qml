pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// The round button that starts the session: grey and a little smaller while there is no goal.
Item {
    id: start

    property bool canStart: true

    signal clicked

    implicitWidth: 36
    implicitHeight: 36
    scale: canStart ? 1 : 0.95

    Behavior on scale {
        EaseInOut { duration: 200 }
    }

    // A disabled button has no pointer shape, and the editor's would show through.
    HoverHandler {
        cursorShape: Qt.ArrowCursor
    }
    PlainButton {
        anchors.fill: parent
        enabled: start.canStart
        cornerRadius: width / 2
        text: "Start session"
        onClicked: start.clicked()

        background: RoundedBox {
            radius: width / 2
            color: start.canStart ? Colors.accent : Colors.quaternaryLabel
        }
        contentItem: Item {
            SymbolIcon {
                anchors.centerIn: parent
                symbol: "arrow.right"
                size: 15
                weight: Font.DemiBold
                color: Colors.white
            }
        }
    }
}
