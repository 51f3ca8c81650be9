pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The field for minutes typed by hand, with the space above it; no height while it is not shown.
FocusScope {
    id: row

    required property DurationControls view
    property font errorFont: Typography.caption

    readonly property bool isShown: view.showCustomInput
    readonly property bool hasError: view.customInputError.length > 0
    readonly property real fullHeight: Layout.spacingMedium + controls.rowHeight
                                       + (hasError ? Layout.spacingSmall + error.implicitHeight : 0)

    // It was closed while it had the focus.
    signal focusLeft

    onIsShownChanged: {
        if (!row.isShown && row.focus)
            row.focusLeft();
    }

    height: isShown ? fullHeight : 0
    opacity: isShown ? 1 : 0
    visible: height > 0
    enabled: isShown
    clip: height < fullHeight

    Behavior on height {
        EaseInOut { time: 350 }
    }
    Behavior on opacity {
        EaseInOut { time: 350 }
    }

    Row {
        id: controls

        anchors.horizontalCenter: parent.horizontalCenter
        y: Layout.spacingMedium
        spacing: Layout.defaultSpacing
        // Known before the positioner has run, so that the row does not grow while the sheet opens.
        readonly property real rowHeight: Math.max(field.implicitHeight, setButton.implicitHeight)

        TextField {
            id: field

            anchors.verticalCenter: parent.verticalCenter
            width: Typography.grown(100)
            placeholderText: "5-180"
            text: row.view.customDuration
            Accessible.description: row.view.customInputError
            // However it is written: an assistive tool's text counts as no edit of the field's.
            onTextChanged: row.view.customDuration = text
        }
        PlainText {
            anchors.verticalCenter: parent.verticalCenter
            text: "minutes"
            color: Colors.secondaryText
        }
        PrimaryButton {
            id: setButton

            text: "Set"
            isAvailable: row.view.canSetCustomDuration
            // Refused, it is disabled until the field holds something else.
            onClicked: {
                row.view.applyCustomDuration();
                if (row.hasError)
                    field.forceActiveFocus(Qt.TabFocusReason);
            }
        }
    }
    PlainText {
        id: error

        anchors.horizontalCenter: parent.horizontalCenter
        y: controls.y + controls.rowHeight + Layout.spacingSmall
        // It is announced as it appears, so its name comes first.
        visible: Accessible.name.length > 0
        text: row.view.customInputError
        font: row.errorFont
        color: Colors.warning
        Accessible.role: Accessible.Notification
    }
}
