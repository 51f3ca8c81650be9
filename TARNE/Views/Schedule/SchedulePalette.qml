pragma Singleton
import QtQuick
import TARNE.Styling

// The colours that several parts of the schedule share. No other screen has them.
QtObject {
    readonly property color accent: Colors.hex("4F46E5")
    readonly property color text: Colors.hex("1F2937")
    readonly property color softerText: Colors.hex("374151")
    readonly property color secondaryText: Wishes.contrastMore ? softerText : Colors.hex("6B7280")
    readonly property color rule: Colors.hex("E5E7EB")
    readonly property color ground: Colors.hex("FAFAFA")
    readonly property color control: Colors.hex("F9FAFB")
    readonly property color inactive: Colors.hex("D1D5DB")
    readonly property color green: Colors.hex("059669")
    readonly property color red: Colors.hex("DC2626")
    readonly property color amber: Colors.hex("F59E0B")
}
