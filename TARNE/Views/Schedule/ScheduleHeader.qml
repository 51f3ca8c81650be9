pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// A head of the schedule, over a rule: a title and a line below it at the left, buttons at the right.
Rectangle {
    id: header

    required property string title
    required property string subtitle
    default property alias buttons: row.data
    property font titleFont: Typography.system(20, Font.DemiBold)
    property color titleColor: SchedulePalette.text
    property font subtitleFont: Typography.system(14)
    property color subtitleColor: SchedulePalette.secondaryText

    implicitHeight: Math.max(titles.implicitHeight, row.implicitHeight) + 2 * 20
    color: Colors.white

    Column {
        id: titles

        x: 24
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4

        PlainText {
            text: header.title
            font: header.titleFont
            color: header.titleColor
            Accessible.role: Accessible.Heading
        }
        PlainText {
            text: header.subtitle
            font: header.subtitleFont
            color: header.subtitleColor
        }
    }
    Row {
        id: row

        anchors.right: parent.right
        anchors.rightMargin: 24
        anchors.verticalCenter: parent.verticalCenter
        spacing: 12
    }
    Separator {
        anchors.bottom: parent.bottom
        width: parent.width
        color: SchedulePalette.rule
    }
}
