pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The user's own words on a session; always open.
Column {
    id: section

    required property historyEntryCard card

    spacing: 8

    Item {
        width: section.width
        implicitHeight: title.implicitHeight

        SymbolIcon {
            x: 2
            anchors.verticalCenter: parent.verticalCenter
            symbol: "note.text"
            size: 12
            weight: Font.Medium
            color: Colors.accent
        }
        PlainText {
            id: title

            x: 24
            text: "Your Reflection"
            font: Typography.system(13, Font.Medium)
            color: Colors.label
        }
    }
    LongText {
        x: 24
        width: section.width - 24
        text: section.card.reflection
        font: Typography.system(13)
        lineSpacing: 2
        color: section.card.hasReflection ? Colors.label : Colors.secondaryLabel
    }
}
