pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A card's title and the span of time that it covers.
Column {
    id: heading

    required property string title
    required property string subtitle

    spacing: 4

    PlainText {
        width: heading.width
        text: heading.title
        font: Typography.heading3
        wrapMode: Text.Wrap
        Accessible.role: Accessible.Heading
    }
    PlainText {
        width: heading.width
        text: heading.subtitle
        font: Typography.caption
        color: Colors.secondaryText
        wrapMode: Text.Wrap
    }
}
