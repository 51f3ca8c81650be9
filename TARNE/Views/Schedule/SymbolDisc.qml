pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A symbol on a disc of a tint of its colour.
Rectangle {
    id: disc

    required property string symbol
    required property color symbolColor
    required property int weight
    required property real diameter

    width: diameter
    height: diameter
    radius: diameter / 2
    color: Colors.withOpacity(disc.symbolColor, 0.1)

    SymbolIcon {
        anchors.centerIn: parent
        symbol: disc.symbol
        size: 16
        weight: disc.weight
        color: disc.symbolColor
    }
}
