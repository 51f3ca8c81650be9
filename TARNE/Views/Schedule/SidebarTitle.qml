pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// The title of a part of the schedule's sidebar, with its symbol.
Row {
    id: title

    required property string symbol
    required property string text
    required property real size

    spacing: 8

    SymbolIcon {
        anchors.verticalCenter: parent.verticalCenter
        symbol: title.symbol
        size: 16
        weight: Font.Medium
        color: Colors.hex("4F46E5")
    }
    PlainText {
        text: title.text
        font: Typography.system(title.size, Font.DemiBold)
        color: Colors.hex("1F2937")
        Accessible.role: Accessible.Heading
    }
}
