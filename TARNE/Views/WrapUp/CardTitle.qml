pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A symbol and the title of a card behind it.
Row {
    id: title

    required property string symbol
    required property string text

    spacing: 8

    SymbolIcon {
        anchors.verticalCenter: parent.verticalCenter
        symbol: title.symbol
        size: 16
        weight: Font.Medium
        color: Colors.accent
    }
    PlainText {
        text: title.text
        font: Typography.system(16, Font.DemiBold)
        color: Colors.label
        Accessible.role: Accessible.Heading
    }
}
