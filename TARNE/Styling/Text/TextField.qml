pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import QtQuick.Templates as T

// A line of text in the rounded-border field look. Its accessible name is its placeholder.
T.TextField {
    id: field

    property real cornerRadius: 6
    property color outlineColor: activeFocus ? Colors.accent : Colors.border
    property real outlineWidth: 1

    implicitWidth: 160
    implicitHeight: contentHeight + topPadding + bottomPadding
    leftPadding: 8
    rightPadding: 8
    topPadding: 6
    bottomPadding: 6
    font: Typography.body
    color: Colors.primaryText
    placeholderTextColor: Colors.secondaryText
    selectionColor: Colors.withOpacity(Colors.accent, 0.3)
    selectedTextColor: Colors.primaryText
    selectByMouse: true
    maximumLength: 2147483647 // In place of 32767: a paste is never cut.
    verticalAlignment: TextInput.AlignVCenter
    Accessible.name: placeholderText

    HoverHandler {
        cursorShape: Qt.IBeamCursor
    }

    background: Rectangle {
        radius: field.cornerRadius
        color: Colors.textBackground
        border.width: field.outlineWidth
        border.color: field.outlineColor
    }

    ControlText {
        x: field.leftPadding
        width: field.width - field.leftPadding - field.rightPadding
        height: field.height
        visible: field.length === 0 && field.preeditText.length === 0
        text: field.placeholderText
        font: field.font
        color: field.placeholderTextColor
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
    }
}
