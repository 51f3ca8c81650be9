import QtQuick
import TARNE.Styling

// The frame that the four cards of the insights share.
Card {
    color: Colors.white
    shadowColor: Colors.withOpacity(Colors.black, 0.05)
    shadowRadius: 8
    shadowOffset: 2
    spacing: Layout.spacingMedium
}
