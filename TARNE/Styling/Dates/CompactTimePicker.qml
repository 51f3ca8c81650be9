pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A clock time on one line. Each of its fields is a stop of the Tab key and takes digits, the arrow
// keys up and down, Page Up and Page Down (tens), Home and End; left and right go between fields.
Rectangle {
    id: picker

    required property ClockTimeFields fields
    property color accent: Colors.accent

    function focusField(row: int): void {
        const field = segments.itemAt(row) as TimeField;
        if (field)
            field.forceActiveFocus(Qt.TabFocusReason);
    }

    implicitWidth: row.implicitWidth + 20
    implicitHeight: row.implicitHeight + 12
    radius: 6
    color: Colors.textBackground
    border.width: 1
    border.color: Colors.border
    Accessible.role: Accessible.Grouping
    Accessible.name: fields.timeText

    Row {
        id: row

        anchors.centerIn: parent

        Repeater {
            id: segments

            model: picker.fields

            TimeField {
                fields: picker.fields
                accent: picker.accent
                onNeighbourWanted: offset => picker.focusField(index + offset)
            }
        }
    }
}
