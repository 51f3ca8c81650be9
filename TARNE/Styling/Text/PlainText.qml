pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A visible text: never read as markup, and a node of its own for assistive tools.
Text {
    // The space between two lines beyond the font's own, in points.
    property real lineSpacing: 0

    font: Typography.body
    color: Colors.primaryText
    textFormat: Text.PlainText
    // A line of the system's font is that many whole points high.
    lineHeight: lineSpacing > 0 ? 1 + lineSpacing / Math.ceil(font.pixelSize * 1.21) : 1
    // Below the last line there is no next one.
    bottomPadding: -lineSpacing
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
