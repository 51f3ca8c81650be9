import QtQuick
import TARNE.Styling

// A white card of a page.
Card {
    color: Colors.white
    shadowColor: Colors.withOpacity(Colors.black, 0.05)
    shadowRadius: 8
    shadowOffset: 2
    spacing: Layout.spacingMedium
}
