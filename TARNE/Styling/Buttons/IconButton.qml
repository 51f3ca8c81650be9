pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A bare symbol that can be pressed. `accessibleLabel` is its name, since it shows no text.
PlainButton {
    id: button

    required property string symbol
    required property string accessibleLabel
    property real size: 16
    property color color: Colors.secondaryLabel
    property int weight: Font.Normal
    property bool hierarchical: false

    text: accessibleLabel
    cornerRadius: size / 2
    contentItem: Item {
        implicitWidth: button.size
        implicitHeight: button.size

        SymbolIcon {
            anchors.centerIn: parent
            symbol: button.symbol
            size: button.size
            color: button.color
            weight: button.weight
            hierarchical: button.hierarchical
        }
    }
}
