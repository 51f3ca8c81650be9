import QtQuick
import TARNE.Styling

// A picture of two keys. No key is bound to anything by it.
Row {
    spacing: 4

    SymbolIcon {
        symbol: "command"
        size: 11
        weight: Font.Medium
        color: Colors.tertiaryLabel
    }
    SymbolIcon {
        symbol: "return"
        size: 11
        weight: Font.Medium
        color: Colors.tertiaryLabel
    }
}
