pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// One day of a GraphicalDatePicker: a blank place, or a number that can be picked. The selected day
// is a filled disc, today's number has the accent colour. Not a template's button, whose role for
// assistive tools is its own: to them the days are one choice out of many.
Item {
    id: button

    required property color accent
    required property string text
    required property string fullName
    required property bool isSelected
    required property bool isToday
    // Within the month and the range.
    required property bool isEnabled

    signal clicked

    function click(): void {
        if (button.enabled)
            button.clicked();
    }

    // A blank place keeps its room in the grid.
    opacity: text.length > 0 ? 1 : 0
    enabled: isEnabled
    Accessible.role: Accessible.RadioButton
    Accessible.name: fullName
    Accessible.focusable: enabled
    Accessible.checkable: true
    Accessible.checked: isSelected
    Accessible.onPressAction: click()
    Accessible.onToggleAction: click()
    Keys.onSpacePressed: click()
    Keys.onReturnPressed: click()
    Keys.onEnterPressed: click()

    HoverHandler {
        cursorShape: button.enabled ? Qt.PointingHandCursor : Qt.ArrowCursor
    }
    TapHandler {
        onTapped: button.click()
    }
    RoundedBox {
        anchors.centerIn: parent
        width: 32
        height: 32
        radius: 16
        color: button.isSelected ? button.accent : "transparent"

        FocusRing {
            isShown: button.activeFocus
            cornerRadius: 16
            border.color: Colors.withOpacity(button.accent, 0.5)
        }
    }
    Text {
        anchors.centerIn: parent
        text: button.text
        font: Typography.system(14, button.isSelected || button.isToday ? Font.DemiBold : Font.Normal)
        color: button.isSelected ? Colors.white : !button.isEnabled ? Colors.tertiaryLabel : button.isToday ? button.accent : Colors.primaryText
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
}
