pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import QtQuick.Templates as T

// TextInputStyle around any one item: Typography.body for the controls in it, the platform's default
// padding, the background with its corners and an outline of one point in the border colour.
T.Pane {
    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: contentHeight + topPadding + bottomPadding
    // The platform's padding where a look names none.
    padding: 16
    font: Typography.body
    background: Rectangle {
        radius: Layout.cornerRadius
        color: Colors.background
        border.color: Colors.border
        border.width: 1
    }
}
