pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A wrapped text of any length, as high as it is. Its beginning is on the screen at once; what is
// longer than a few thousand characters follows bit by bit.
Column {
    id: longText

    property string text
    property font font: Typography.body
    property color color: Colors.primaryText
    property real lineSpacing: 0
    // Otherwise its lines begin at the left edge, whatever its script.
    property bool isCentered: false

    // The blocks are lines of one text.
    spacing: lineSpacing

    Repeater {
        model: TextBlocks {
            text: longText.text
            font: longText.font
            width: longText.width
        }

        PlainText {
            required property string block

            width: longText.width
            text: block
            font: longText.font
            color: longText.color
            lineSpacing: longText.lineSpacing
            horizontalAlignment: longText.isCentered ? Text.AlignHCenter : Text.AlignLeft
            wrapMode: Text.Wrap
        }
    }
}
