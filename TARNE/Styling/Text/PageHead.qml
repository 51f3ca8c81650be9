pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// The centred head of a page: its title and what it is for.
Column {
    id: head

    required property string title
    required property string subtitle

    spacing: Layout.spacingSmall

    PlainText {
        width: head.width
        text: head.title
        font: Typography.heading1
        horizontalAlignment: Text.AlignHCenter
        Accessible.role: Accessible.Heading
    }
    PlainText {
        width: head.width
        text: head.subtitle
        color: Colors.secondaryText
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
    }
}
