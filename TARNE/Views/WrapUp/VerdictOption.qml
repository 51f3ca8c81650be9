pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// One of the verdicts on a goal. Chosen, it stays so until another one is.
PlainButton {
    id: option

    required property bool isSelected

    readonly property color labelColor: isSelected ? Colors.label : Colors.secondaryLabel

    checkable: true
    autoExclusive: true
    checked: isSelected
    accessibleRole: Accessible.RadioButton
    Accessible.onToggleAction: clicked()

    contentItem: Row {
        spacing: 6

        PlainText {
            text: option.isSelected ? "●" : "○"
            font: Typography.system(11)
            color: option.labelColor
        }
        PlainText {
            text: option.text
            font: Typography.system(11)
            color: option.labelColor
        }
    }
}
