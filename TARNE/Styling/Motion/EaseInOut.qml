import QtQuick
import TARNE.Styling

// The standard ease-in-out curve, for a number or a colour. Everything that moves from one place or
// look to another does so by this. For a user who asks for no movement it takes no time.
PropertyAnimation {
    // How long it takes, in milliseconds.
    required property int time

    duration: Wishes.reducedMotion ? 0 : time
    easing.type: Easing.BezierSpline
    easing.bezierCurve: [0.42, 0, 0.58, 1, 1, 1]
}
