import QtQuick
import TARNE.Styling

// Gives a rounded item one opacity as a whole: what the item lies on shines through it. An item's own
// `opacity` counts for each of its parts, so a ground would show through the text on it. A layer
// would be Qt's own way; the software scene graph draws it out of place where a point is not a pixel.
RoundedBox {
    id: veil

    required property color ground
    required property real wholeOpacity

    z: 1
    anchors.fill: parent
    visible: opacity > 0
    color: veil.ground
    opacity: 1 - veil.wholeOpacity
}
