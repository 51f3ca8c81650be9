pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The controls that the duration sheet and the inline picker have in common: the presets, the row
// for minutes typed by hand, and the words for the choice.
Column {
    id: choice

    required property DurationControls view
    property font errorFont: Typography.caption
    property font summaryFont: Typography.body

    spacing: Layout.spacingMedium

    Row {
        id: presets

        // Whole points: a button that ends between two pixels has a blurred outline.
        readonly property real share:
            Math.floor((choice.width + spacing) / choice.view.presetDurations.length - spacing)

        anchors.horizontalCenter: parent.horizontalCenter
        spacing: Layout.defaultSpacing

        Repeater {
            model: choice.view.presetDurations

            DurationButton {
                id: preset

                required property int modelData

                width: presets.share
                minutes: modelData
                isSelected: choice.view.selectedPreset === modelData
                onClicked: choice.view.selectPreset(preset.modelData)
            }
        }
    }

    // One item, so that the row comes and goes together with the space above it.
    Column {
        width: parent.width

        SecondaryButton {
            id: customButton

            readonly property bool accessibleExpanded: choice.view.showCustomInput

            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, Typography.grown(200))
            symbol: "pencil"
            text: "Custom Duration"
            onClicked: choice.view.toggleCustomInput()
        }
        CustomDurationRow {
            width: parent.width
            view: choice.view
            errorFont: choice.errorFont
            onFocusLeft: customButton.forceActiveFocus()
        }
    }

    Item {
        anchors.horizontalCenter: parent.horizontalCenter
        implicitWidth: summary.implicitWidth + 2 * 12
        implicitHeight: summary.implicitHeight + 2 * 6

        RoundedBox {
            anchors.fill: parent
            radius: Layout.cornerRadius
            color: Colors.withOpacity(Colors.accent, 0.1)
            outlineColor: Colors.withOpacity(Colors.accent, 0.3)
            outlineWidth: 1
        }
        Row {
            id: summary

            anchors.centerIn: parent
            spacing: Layout.defaultSpacing

            PlainText {
                anchors.verticalCenter: parent.verticalCenter
                text: "Selected Duration:"
                font: choice.summaryFont
                color: Colors.secondaryText
            }
            PlainText {
                anchors.verticalCenter: parent.verticalCenter
                text: choice.view.selectedDurationText
                font: Typography.bodyLarge
                color: Colors.accent
            }
        }
    }
}
