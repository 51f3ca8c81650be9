pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Templates as T
import TARNE.Styling

// The base of all that can be pressed: by the pointer, by Space, Return and Enter, and by assistive
// tools. Its accessible name is its `text`.
T.AbstractButton {
    id: pressable

    // Whether it can be pressed. A look that tells of it asks here: a modal layer disables what it
    // covers, and covered buttons keep their looks.
    property bool isAvailable: true
    // Whether the pointer becomes a hand while over it.
    property bool hasPointingHand: true
    // What it is to assistive tools. A template overwrites the role that is attached to it, so
    // AccessibleItem reads this one.
    property int accessibleRole: Accessible.Button

    // How it came by the focus. A loss of the focus says nothing of that; nor does its return with the
    // window, whose reason would leave the ring away.
    property int ownFocusReason: Qt.OtherFocusReason
    // Ends only after the focus is back.
    property bool isWindowLeft: false

    implicitWidth: Math.max(implicitBackgroundWidth, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(implicitBackgroundHeight, implicitContentHeight + topPadding + bottomPadding)
    enabled: isAvailable
    focusPolicy: Qt.TabFocus
    Window.onActiveChanged: isWindowLeft = !Window.active
    onFocusReasonChanged: {
        if (isWindowLeft || !activeFocus)
            focusReason = ownFocusReason;
        else
            ownFocusReason = focusReason;
    }
    Accessible.name: text
    Accessible.onPressAction: clicked()
    // What an input method still composes belongs to what the press is about. This handler comes
    // before those of who uses the button.
    onClicked: InputMethod.commit()
    // Space presses already. A key that is held presses once.
    Keys.onPressed: event => event.accepted = event.isAutoRepeat && event.key === Qt.Key_Space
    Keys.onReleased: event => event.accepted = event.isAutoRepeat && event.key === Qt.Key_Space
    Keys.onReturnPressed: event => {
        if (!event.isAutoRepeat)
            pressable.clicked();
    }
    Keys.onEnterPressed: event => {
        if (!event.isAutoRepeat)
            pressable.clicked();
    }

    HoverHandler {
        cursorShape: pressable.enabled && pressable.hasPointingHand ? Qt.PointingHandCursor : Qt.ArrowCursor
    }
}
