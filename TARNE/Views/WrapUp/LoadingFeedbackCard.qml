pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// Stands in the place of the coaching while it is on its way.
FeedbackCard {
    padding: 24
    spacing: 16

    Spinner {
        anchors.horizontalCenter: parent.horizontalCenter
        scale: 0.8
    }
    PlainText {
        anchors.horizontalCenter: parent.horizontalCenter
        text: "Generating personalized feedback..."
        font: Typography.system(14)
        color: Colors.secondaryLabel
        Accessible.role: Accessible.Notification
    }
}
