pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import TARNE.Styling

// One of the verdicts on a goal. Chosen, it stays so until another one is.
T.RadioButton {
    id: option

    required property bool isSelected

    readonly property color labelColor: isSelected ? Colors.label : Colors.secondaryLabel

    implicitWidth: implicitContentWidth
    implicitHeight: implicitContentHeight
    checked: isSelected
    focusPolicy: Qt.TabFocus
    opacity: down ? 0.6 : 1
    Accessible.name: text
    // Space presses already.
    Keys.onReturnPressed: option.clicked()
    Keys.onEnterPressed: option.clicked()
    Accessible.onPressAction: option.clicked()
    Accessible.onToggleAction: option.clicked()

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

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }
    FocusRing {
        isShown: option.visualFocus
        cornerRadius: 6
    }
}
