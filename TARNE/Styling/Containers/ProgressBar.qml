pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A thin bar that is filled from the leading side by `value`, from 0 to 1.
Item {
    id: bar

    property real value: 0
    property color color: Colors.accent
    property string accessibleName

    implicitWidth: 80
    implicitHeight: 6
    Accessible.role: Accessible.ProgressBar
    Accessible.name: accessibleName
    // The platform's tools get no value of a progress bar, so it is told in words.
    Accessible.description: Math.round(value * 100) + " %"

    RoundedBox {
        anchors.fill: parent
        radius: height / 2
        color: Colors.quaternaryLabel
    }
    RoundedBox {
        width: Math.max(0, Math.min(1, bar.value)) * bar.width
        height: parent.height
        radius: height / 2
        color: bar.color
        visible: width > 0
    }
}
