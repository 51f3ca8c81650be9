pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import QtQuick.Templates as T

// A button whose look is chosen by `buttonStyle`, with an optional symbol before or behind its text.
// The text is its accessible name. Set `label` to put something else than text and symbols into it.
T.AbstractButton {
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
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    horizontalPadding: look.horizontalPadding
    verticalPadding: look.verticalPadding
    focusPolicy: Qt.TabFocus
    font: Typography.button
    Accessible.name: text
    // What an input method still composes belongs to what the press is about. This handler comes
    // before those of who uses the button.
    onClicked: InputMethod.commit()
    // Space presses already. A key that is held presses once.
    Keys.onPressed: event => event.accepted = event.isAutoRepeat && event.key === Qt.Key_Space
    Keys.onReleased: event => event.accepted = event.isAutoRepeat && event.key === Qt.Key_Space
    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat)
            button.clicked();
    }
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat)
            button.clicked();
    }
    Accessible.onPressAction: {
        if (button.enabled)
            button.clicked();
    }

    Behavior on wholeOpacity {
        EaseInOut { duration: 200 }
    }
    GroundVeil {
        ground: button.ground
        radius: button.look.cornerRadius
        wholeOpacity: button.wholeOpacity
    }

    HoverHandler {
        cursorShape: button.enabled ? Qt.PointingHandCursor : Qt.ArrowCursor
    }

    background: RoundedBox {
        color: button.look.background
        radius: button.look.cornerRadius
        outlineColor: button.look.outlineColor
        outlineWidth: button.look.outlineWidth

        Behavior on color {
            enabled: button.lookDuration > 0
            EaseInOutColor { duration: button.lookDuration }
        }
        Behavior on outlineColor {
            enabled: button.lookDuration > 0
            EaseInOutColor { duration: button.lookDuration }
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
        spacing: 6

        SymbolIcon {
            anchors.verticalCenter: parent.verticalCenter
            visible: button.symbol.length > 0
            symbol: button.symbol
            size: button.font.pixelSize
            weight: Font.Medium
            color: button.look.textColor
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            visible: text.length > 0
            text: button.text
            font: button.font
            color: button.look.textColor
            textFormat: Text.PlainText
            Accessible.ignored: true
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
