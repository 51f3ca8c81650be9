pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A titled box around a column.
Column {
    id: box

    required property string title
    default property alias content: inner.data
    property alias contentSpacing: inner.spacing
    property real verticalPadding: 8

    spacing: 6

    PlainText {
        text: box.title
        font: Typography.systemHeadline
        leftPadding: 4
        Accessible.role: Accessible.Heading
    }
    Rectangle {
        width: box.width
        height: inner.implicitHeight + 2 * (box.verticalPadding + 4)
        radius: 6
        color: Colors.hex("F7F7F8")
        border.width: 1
        border.color: Colors.hex("E6E6E8")

        Column {
            id: inner

            x: 12
            y: box.verticalPadding + 4
            width: parent.width - 24
        }
    }
}
