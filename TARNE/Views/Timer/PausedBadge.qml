pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// Says that the count-down does not count. It comes and goes by scale and opacity, and takes no
// room while it is gone.
Item {
    id: badge

    required property bool isShown

    implicitWidth: label.implicitWidth + 2 * Layout.spacingMedium
    implicitHeight: label.implicitHeight + 2 * Layout.spacingSmall
    visible: opacity > 0
    opacity: isShown ? 1 : 0
    scale: opacity

    Behavior on opacity {
        EaseInOut { time: 350 }
    }

    RoundedBox {
        anchors.fill: parent
        radius: Layout.cornerRadius
        color: Colors.withOpacity(Colors.warning, 0.1)
    }
    PlainText {
        id: label

        anchors.centerIn: parent
        // Letters of less than a pixel cannot be drawn.
        visible: badge.scale > 0.2
        text: "⏸️ Paused"
        font: Typography.bodyLarge
        color: Colors.warning
    }
}
