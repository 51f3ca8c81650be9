pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// The head of a sheet: its title, and the button that closes it.
Item {
    id: head

    required property string title
    required property real margin
    required property real topPadding
    required property real bottomPadding
    property alias font: label.font
    property alias color: label.color
    property alias closeButton: closeButton

    readonly property real titleHeight: label.implicitHeight

    signal closed

    width: parent?.width ?? 0
    implicitHeight: topPadding + titleHeight + bottomPadding

    PlainText {
        id: label

        x: head.margin
        y: head.topPadding
        text: head.title
        Accessible.role: Accessible.Heading
    }
    SheetCloseButton {
        id: closeButton

        anchors.right: parent.right
        anchors.rightMargin: head.margin
        anchors.verticalCenter: label.verticalCenter
        onClicked: head.closed()
    }
}
