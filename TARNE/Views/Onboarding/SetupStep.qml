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
        id: number

        width: Typography.grown(20)
        text: step.number
        font: Typography.emphasis
        color: Colors.accent
    }
    PlainText {
        width: step.width - number.width - step.spacing
        text: step.text
        wrapMode: Text.Wrap
    }
}
