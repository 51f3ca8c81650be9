pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// The ground of every card of the feedback sheet.
Card {
    cornerRadius: 12
    color: Colors.controlBackground
    shadowRadius: 0
}
