pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A title and the symbol before it.
Row {
    id: title

    required property string symbol
    required property string text
    property color symbolColor: Colors.accent
    property int symbolWeight: Font.Medium
    property font font: Typography.system(16, Font.DemiBold)
    property color color: Colors.label

    spacing: Layout.defaultSpacing

    SymbolIcon {
        anchors.verticalCenter: parent.verticalCenter
        symbol: title.symbol
        size: Typography.grown(16)
        weight: title.symbolWeight
        color: title.symbolColor
    }
    PlainText {
        text: title.text
        font: title.font
        color: title.color
        Accessible.role: Accessible.Heading
    }
}
