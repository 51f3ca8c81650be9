pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// One numbered step of a setup card, as wide as its column.
Row {
    id: step

    required property string number
    required property string text

    width: parent ? parent.width : implicitWidth
    spacing: Layout.defaultSpacing

    PlainText {
        width: 20
        text: step.number
        font: Typography.emphasis
        color: Colors.accent
    }
    PlainText {
        width: step.width - 20 - step.spacing
        text: step.text
        wrapMode: Text.Wrap
    }
}
