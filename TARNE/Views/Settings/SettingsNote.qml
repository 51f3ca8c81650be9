import QtQuick
import TARNE.Styling

// A line of small print in a group box, as wide as the box.
PlainText {
    width: parent ? parent.width : implicitWidth
    font: Typography.systemCaption
    color: Colors.secondaryLabel
    wrapMode: Text.Wrap
}
