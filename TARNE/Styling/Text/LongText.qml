pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A wrapped text of any length, as high as it is. Its beginning is on the screen at once; of what is
// longer than a few thousand characters, only the part in sight has items.
Item {
    id: longText

    property string text
    property font font: Typography.body
    property color color: Colors.primaryText
    property real lineSpacing: 0
    // Otherwise its lines begin at the left edge, whatever its script.
    property bool isCentered: false

    implicitHeight: Math.max(0, blocks.height - lineSpacing)

    // It shows nothing: it tells how high a line is.
    PlainText {
        id: line

        visible: false
        font: longText.font
        lineSpacing: longText.lineSpacing
        Accessible.ignored: true
    }
    Repeater {
        model: TextBlocks {
            id: blocks

            area: longText
            text: longText.text
            font: longText.font
            width: longText.width
            lineHeight: line.lineHeight
        }

        PlainText {
            required property string block
            required property real blockTop

            y: blockTop
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
