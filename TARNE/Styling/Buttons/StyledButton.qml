pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A button whose look is chosen by `buttonStyle`, with an optional symbol before or behind its text.
// The text is its accessible name. Set `label` to put something else than text and symbols into it.
Pressable {
    id: button

    property anyButtonStyle buttonStyle: ButtonStyles.primary
    property string symbol
    property string trailingSymbol
    property real minimumWidth: 0
    // In place of text and symbols; sized by its implicit size, in `look.textColor`.
    property Item label: null
    // How long another look takes to come, in milliseconds.
    property int lookDuration: 0
    // What the button lies on.
    property color ground: Colors.background
    // The look's opacity, on its way to another.
    property real wholeOpacity: look.opacity

    readonly property buttonLook look: button.buttonStyle.render(button.down)

    // Whole points, so that what stands beside it is drawn on whole pixels as well.
    implicitWidth: Math.max(minimumWidth, Math.ceil(implicitContentWidth) + leftPadding + rightPadding)
    horizontalPadding: look.horizontalPadding
    verticalPadding: look.verticalPadding
    font: Typography.button

    Behavior on wholeOpacity {
        EaseInOut { time: 200 }
    }
    GroundVeil {
        ground: button.ground
        radius: button.look.cornerRadius
        wholeOpacity: button.wholeOpacity
    }

    background: RoundedBox {
        color: button.look.background
        radius: button.look.cornerRadius
        outlineColor: button.look.outlineColor
        outlineWidth: button.look.outlineWidth

        Behavior on color {
            enabled: button.lookDuration > 0
            EaseInOut { time: button.lookDuration }
        }
        Behavior on outlineColor {
            enabled: button.lookDuration > 0
            EaseInOut { time: button.lookDuration }
        }

        FocusRing {
            isShown: button.visualFocus
            cornerRadius: button.look.cornerRadius
        }
    }

    contentItem: Item {
        implicitWidth: button.label ? button.label.implicitWidth : row.implicitWidth
        implicitHeight: button.label ? button.label.implicitHeight : row.implicitHeight
        children: button.label ? [button.label] : [row]
    }

    Row {
        id: row

        anchors.centerIn: parent
        visible: !button.label
        spacing: Layout.defaultSpacing

        SymbolIcon {
            anchors.verticalCenter: parent.verticalCenter
            visible: button.symbol.length > 0
            symbol: button.symbol
            size: button.font.pixelSize
            weight: Font.Medium
            color: button.look.textColor
        }
        ControlText {
            anchors.verticalCenter: parent.verticalCenter
            visible: text.length > 0
            text: button.text
            font: button.font
            color: button.look.textColor
        }
        SymbolIcon {
            anchors.verticalCenter: parent.verticalCenter
            visible: button.trailingSymbol.length > 0
            symbol: button.trailingSymbol
            size: button.font.pixelSize
            weight: Font.Medium
            color: button.look.textColor
        }
    }
}
