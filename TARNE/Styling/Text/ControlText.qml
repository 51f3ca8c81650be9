import QtQuick

// A text that is part of a control. Assistive tools are told of the control alone.
Text {
    textFormat: Text.PlainText
    Accessible.ignored: true
}
