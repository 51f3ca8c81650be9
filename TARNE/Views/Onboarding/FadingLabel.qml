pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// The label of a button: another text fades in over the one before it, and the width follows.
Item {
    id: label

    required property string text
    required property font font
    required property color color
    // As long as the platform's default animation, in milliseconds.
    readonly property int duration: 350
    // The text that `text` replaces next.
    property string lastText

    implicitWidth: current.implicitWidth
    implicitHeight: current.implicitHeight

    onTextChanged: {
        if (label.lastText.length > 0) {
            previous.text = label.lastText;
            // On the way, the one that fades out comes back from where it is.
            current.opacity = 1 - current.opacity;
            fade.restart();
        }
        label.lastText = label.text;
    }
    Component.onCompleted: label.lastText = label.text

    Behavior on implicitWidth {
        EaseInOut { time: label.duration }
    }
    EaseInOut {
        id: fade

        target: current
        property: "opacity"
        to: 1
        time: label.duration
    }

    ControlText {
        id: previous

        anchors.centerIn: parent
        visible: opacity > 0
        opacity: 1 - current.opacity
        font: label.font
        color: label.color
    }
    ControlText {
        id: current

        anchors.centerIn: parent
        text: label.text
        font: label.font
        color: label.color
    }
}
