pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// TextInputStyle around any one item: the platform's default padding, the background with its
// corners and an outline of one point in the border colour. The item is to use Typography.body.
Item {
    id: box

    default property alias content: inner.data
    readonly property font font: Typography.body

    // The platform's padding where a look names none.
    readonly property real defaultPadding: 16

    implicitWidth: inner.childrenRect.width + 2 * defaultPadding
    implicitHeight: inner.childrenRect.height + 2 * defaultPadding

    Rectangle {
        anchors.fill: parent
        radius: Layout.cornerRadius
        color: Colors.background
        border.color: Colors.border
        border.width: 1
    }
    Item {
        id: inner

        anchors.fill: parent
        anchors.margins: box.defaultPadding
    }
}
