pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// One day of a GraphicalDatePicker: a blank place, or a number that can be picked. The selected day
// is a filled disc, today's number has the accent colour. To assistive tools the days are one choice
// out of many.
Pressable {
    id: button

    required text
    required property color accent
    required property string fullName
    required property bool isSelected
    required property bool isToday
    // Within the month and the range.
    required property bool isEnabled

    // A blank place keeps its room in the grid.
    opacity: text.length > 0 ? 1 : 0
    enabled: isEnabled
    checkable: true
    autoExclusive: true
    checked: isSelected
    accessibleRole: Accessible.RadioButton
    Accessible.name: fullName
    Accessible.focusable: enabled
    Accessible.onToggleAction: clicked()

    contentItem: Item {
        RoundedBox {
            anchors.centerIn: parent
            width: Typography.grown(32)
            height: width
            radius: width / 2
            color: button.isSelected ? button.accent : "transparent"

            FocusRing {
                isShown: button.activeFocus
                cornerRadius: Typography.grown(16)
                border.color: Colors.withOpacity(button.accent, 0.5)
            }
        }
        ControlText {
            anchors.centerIn: parent
            text: button.text
            font: Typography.system(14, button.isSelected || button.isToday ? Font.DemiBold : Font.Normal)
            color: button.isSelected ? Colors.white : !button.isEnabled ? Colors.tertiaryLabel : button.isToday ? button.accent : Colors.primaryText
        }
    }
}
