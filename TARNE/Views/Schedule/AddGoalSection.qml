pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

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

        SymbolDisc {
            diameter: 32
            symbol: section.symbol
            symbolColor: SchedulePalette.accent
            weight: Font.DemiBold
        }
        PlainText {
            anchors.verticalCenter: parent.verticalCenter
            text: section.title
            font: Typography.system(17, Font.DemiBold)
            color: SchedulePalette.text
            Accessible.role: Accessible.Heading
        }
    }
    Column {
        id: body

        width: section.width - section.leftPadding - section.rightPadding
    }
}
