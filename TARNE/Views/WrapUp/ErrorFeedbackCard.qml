pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// Stands in the place of the coaching when there is none, and says why.
FeedbackCard {
    id: card

    required property string error

    padding: 20
    spacing: 12

    SymbolIcon {
        anchors.horizontalCenter: parent.horizontalCenter
        symbol: "exclamationmark.triangle.fill"
        size: 24
        color: Colors.orange
    }
    PlainText {
        anchors.horizontalCenter: parent.horizontalCenter
        text: "Unable to generate feedback"
        font: Typography.system(16, Font.DemiBold)
        color: Colors.label
        Accessible.role: Accessible.Notification
        Accessible.description: card.error
    }
    // The service's own words, of any length.
    LongText {
        width: parent.width
        text: card.error
        font: Typography.system(14)
        color: Colors.secondaryLabel
        isCentered: true
    }
}
