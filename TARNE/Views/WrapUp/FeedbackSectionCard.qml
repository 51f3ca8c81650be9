pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// One section of the coaching; without content only its title.
FeedbackCard {
    id: card

    required property string icon
    required property string title
    required property string sectionText

    padding: 16
    spacing: 12

    SymbolTitle {
        symbol: card.icon
        text: card.title
    }
    LongText {
        width: parent.width
        visible: card.sectionText.length > 0
        text: card.sectionText
        font: Typography.system(14)
        color: Colors.label
        lineSpacing: 4
    }
}
