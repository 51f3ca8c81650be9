pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A row with an icon and a title that opens and closes what stands under it. It starts closed, and
// what it holds is made when it is first opened.
Column {
    id: section

    required property string symbol
    required property string title
    required property Component content
    property bool isExpanded: false
    property real contentLeading: 24
    readonly property Item button: row

    FontMetrics {
        id: line

        font: Typography.system(13, Font.Medium)
    }
    PlainButton {
        id: row

        readonly property bool accessibleExpanded: section.isExpanded

        width: section.width
        text: section.title
        onClicked: section.isExpanded = !section.isExpanded

        contentItem: Item {
            implicitHeight: Math.ceil(line.height)

            Item {
                width: 16
                height: parent.height

                SymbolIcon {
                    anchors.centerIn: parent
                    symbol: section.symbol
                    size: 12
                    weight: Font.Medium
                    color: Colors.accent
                }
            }
            PlainText {
                x: 24
                anchors.verticalCenter: parent.verticalCenter
                text: section.title
                font: line.font
                color: Colors.label
            }
            SymbolIcon {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                symbol: section.isExpanded ? "chevron.up" : "chevron.down"
                size: 10
                weight: Font.Medium
                color: Colors.secondaryLabel
            }
        }
    }
    Item {
        x: section.contentLeading
        width: section.width - section.contentLeading
        // With the space above it, so that nothing jumps when it begins to open.
        height: (8 + slot.implicitHeight) * openness
        clip: openness < 1
        visible: section.isExpanded || openness > 0

        property real openness: section.isExpanded ? 1 : 0

        Behavior on openness {
            EaseInOut { time: 200 }
        }

        ComponentSlot {
            id: slot

            y: parent.height - implicitHeight
            width: parent.width
            opacity: parent.openness
            isActive: section.isExpanded || parent.openness > 0
            component: section.content
        }
    }
}
