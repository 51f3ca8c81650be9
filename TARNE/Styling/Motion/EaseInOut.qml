import QtQuick

// The standard ease-in-out curve, for a number or a colour.
PropertyAnimation {
    easing.type: Easing.BezierSpline
    easing.bezierCurve: [0.42, 0, 0.58, 1, 1, 1]
}
