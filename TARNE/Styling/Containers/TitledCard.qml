pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A card of a page, under a symbol and a title.
PageCard {
    id: card

    required property string symbol
    required property color symbolColor
    required property string title

    SymbolTitle {
        symbol: card.symbol
        symbolColor: card.symbolColor
        symbolWeight: Font.Normal
        text: card.title
        font: Typography.heading3
        color: Colors.primaryText
    }
}
