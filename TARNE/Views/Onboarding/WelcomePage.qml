pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// The welcome page: the application's icon, its name and what it is for.
Column {
    id: page

    // The name on the accent colour takes the place of an icon that is not there.
    required property url appIcon

    padding: Layout.padding

    Item {
        anchors.horizontalCenter: parent.horizontalCenter
        width: 120
        height: 120

        // Its corners are as round as those of what takes its place: the picture leaves them empty.
        Image {
            id: icon

            anchors.fill: parent
            visible: status === Image.Ready
            source: page.appIcon
            sourceSize.width: 240
            sourceSize.height: 240
            fillMode: Image.PreserveAspectFit
            Accessible.role: Accessible.Graphic
            Accessible.name: "AppIcon"
        }
        Rectangle {
            anchors.fill: parent
            visible: !icon.visible
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
        Accessible.role: Accessible.Heading
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
