pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// One field of a CompactTimePicker, with the sign that stands before it.
FocusScope {
    id: field

    required property ClockTimeFields fields
    required property color accent
    required property int index
    required property string text
    required property string separator
    required property string name
    required property int value
    required property int minimum
    required property int maximum

    // The keyboard wants the field so many places further.
    signal neighbourWanted(int offset)

    function handleKey(key: int, text: string): bool {
        switch (key) {
        case Qt.Key_Up: field.fields.step(field.index, 1); return true;
        case Qt.Key_Down: field.fields.step(field.index, -1); return true;
        case Qt.Key_PageUp: field.fields.step(field.index, 10); return true;
        case Qt.Key_PageDown: field.fields.step(field.index, -10); return true;
        case Qt.Key_Home: field.fields.toMinimum(field.index); return true;
        case Qt.Key_End: field.fields.toMaximum(field.index); return true;
        case Qt.Key_Left: field.neighbourWanted(-1); return true;
        case Qt.Key_Right: field.neighbourWanted(1); return true;
        case Qt.Key_Tab:
        case Qt.Key_Backtab: return false;
        }
        if (text.length === 0)
            return false;
        if (field.fields.type(field.index, text))
            field.neighbourWanted(1);
        return true;
    }

    implicitWidth: content.implicitWidth
    implicitHeight: content.implicitHeight

    Row {
        id: content

        ControlText {
            text: field.separator
            font: Typography.system(15)
            color: Colors.primaryText
        }
        Rectangle {
            id: box

            // Read by assistive tools.
            readonly property int value: field.value
            readonly property int minimumValue: field.minimum
            readonly property int maximumValue: field.maximum
            readonly property int stepSize: 1

            implicitWidth: label.implicitWidth + 6
            implicitHeight: label.implicitHeight + 2
            focus: true
            activeFocusOnTab: true
            radius: 4
            color: activeFocus ? field.accent : "transparent"
            Accessible.role: Accessible.SpinBox
            Accessible.name: field.name
            Accessible.description: field.text
            Accessible.focusable: true
            Accessible.onIncreaseAction: field.fields.step(field.index, 1)
            Accessible.onDecreaseAction: field.fields.step(field.index, -1)
            onActiveFocusChanged: field.fields.endTyping()
            Keys.onPressed: event => {
                event.accepted = field.handleKey(event.key, event.text);
            }

            ControlText {
                id: label

                anchors.centerIn: parent
                text: field.text
                font: Typography.system(15, Font.Medium)
                color: box.activeFocus ? Colors.white : Colors.primaryText
            }
            TapHandler {
                onTapped: box.forceActiveFocus(Qt.MouseFocusReason)
            }
        }
    }
}
