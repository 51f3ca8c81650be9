pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A card of the setup page, under a symbol and a title.
Card {
    id: card

    required property string symbol
    required property color symbolColor
    required property string title

    spacing: Layout.spacingMedium
    color: Colors.white
    shadowColor: Colors.withOpacity(Colors.black, 0.05)
    shadowRadius: 8
    shadowOffset: 2

    Row {
        spacing: Layout.defaultSpacing

        SymbolIcon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: card.symbol
            size: 16
            color: card.symbolColor
        }
        PlainText {
            text: card.title
            font: Typography.heading3
            Accessible.role: Accessible.Heading
        }
    }
}
