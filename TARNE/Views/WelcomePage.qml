pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// The welcome page: the application's icon, its name and what it is for.
Column {
    id: page

    // Empty where the application has no icon; the name on the accent colour takes its place.
    required property url appIcon

    required property bool hasIcon

    padding: Layout.padding

    Item {
        anchors.horizontalCenter: parent.horizontalCenter
        width: 120
        height: 120

        Image {
            anchors.fill: parent
            visible: page.hasIcon
            source: page.appIcon
            sourceSize.width: 240
            sourceSize.height: 240
            fillMode: Image.PreserveAspectFit
            Accessible.role: Accessible.Graphic
            Accessible.name: "AppIcon"
        }
        Rectangle {
            anchors.fill: parent
            visible: !page.hasIcon
            radius: 2 * Layout.cornerRadius
            color: Colors.accent

            PlainText {
                anchors.centerIn: parent
                text: "TARNE"
                font: Typography.heading2
                color: Colors.white
            }
        }
    }
    PlainText {
        anchors.horizontalCenter: parent.horizontalCenter
        topPadding: Layout.spacingMedium
        text: "TARNE"
        font: Typography.system(24, Font.DemiBold)
    }
    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        topPadding: 4
        leftPadding: Layout.spacingMedium
        rightPadding: Layout.spacingMedium
        spacing: 2

        PlainText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Set a goal, block what's distracting,"
            color: Colors.secondaryText
        }
        PlainText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "and stay focused on the work that matters most"
            color: Colors.secondaryText
        }
    }
}
