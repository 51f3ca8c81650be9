pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A section of the add-goal sheet: a title with its symbol on a disc, and what belongs to it.
Column {
    id: section

    required property string symbol
    required property string title
    default property alias content: body.data

    topPadding: 28
    bottomPadding: 28
    leftPadding: 24
    rightPadding: 24
    spacing: 24

    Row {
        spacing: 10

        Rectangle {
            width: 32
            height: 32
            radius: 16
            color: Colors.withOpacity(Colors.hex("4F46E5"), 0.1)

            SymbolIcon {
                anchors.centerIn: parent
                symbol: section.symbol
                size: 16
                weight: Font.DemiBold
                color: Colors.hex("4F46E5")
            }
        }
        PlainText {
            anchors.verticalCenter: parent.verticalCenter
            text: section.title
            font: Typography.system(17, Font.DemiBold)
            color: Colors.hex("1F2937")
            Accessible.role: Accessible.Heading
        }
    }
    Column {
        id: body

        width: section.width - section.leftPadding - section.rightPadding
    }
}
