import QtQuick
import TARNE.Styling

// A line of one point in the system's separator colour.
Rectangle {
    implicitHeight: 1
    color: Colors.separator
}
