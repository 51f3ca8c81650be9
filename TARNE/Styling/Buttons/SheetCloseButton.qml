import QtQuick
import TARNE.Styling

// Closes a sheet, from the trailing end of its head.
IconButton {
    symbol: "xmark.circle.fill"
    size: 20
    hierarchical: true
    accessibleLabel: "Close"
}
