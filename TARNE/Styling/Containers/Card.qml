pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A column on a rounded ground with a soft shadow. Untouched it is CardStyle; screens that draw their
// cards by hand give their own numbers.
ShadowedBox {
    id: card

    default property alias content: column.data
    property alias spacing: column.spacing
    property real padding: Layout.padding

    implicitWidth: column.implicitWidth + 2 * padding
    implicitHeight: column.implicitHeight + 2 * padding

    Column {
        id: column

        x: card.padding
        y: card.padding
        width: card.width - 2 * card.padding
    }
}
