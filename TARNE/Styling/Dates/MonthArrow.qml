pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// The arrow that turns a page of a GraphicalDatePicker.
PlainButton {
    id: arrow

    required property string accessibleLabel
    required property string sign
    required property color accent

    text: accessibleLabel
    implicitWidth: Typography.grown(28)
    implicitHeight: implicitWidth

    contentItem: ControlText {
        text: arrow.sign
        font: Typography.system(20, Font.DemiBold)
        color: arrow.isAvailable ? arrow.accent : Colors.tertiaryLabel
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
}
