pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The controls of the duration sheet as a panel inside a screen; what is chosen is stored at once.
Item {
    id: panel

    required property DurationPickerView view

    implicitWidth: 320
    implicitHeight: column.implicitHeight

    ShadowImage {
        anchors.fill: parent
        color: Colors.shadow
        cornerRadius: Layout.cornerRadius
        blurRadius: 4
    }
    RoundedBox {
        anchors.fill: parent
        radius: Layout.cornerRadius
        color: Colors.background
    }
    Column {
        id: column

        width: parent.width
        padding: Layout.padding
        spacing: Layout.spacingMedium

        PlainText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Select Session Duration"
            font: Typography.heading2
            Accessible.role: Accessible.Heading
        }
        DurationChoice {
            width: parent.width - 2 * Layout.padding
            view: panel.view
            errorFont: Typography.form
            summaryFont: Typography.form
        }
    }
}
