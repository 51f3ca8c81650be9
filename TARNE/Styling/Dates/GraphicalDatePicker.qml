pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// A month of days, one of which is selected. The arrow keys move by days and weeks, Page Up and
// Page Down by months, Home and End to the ends of the week. The days are one stop of the Tab key.
// The weeks share the height that it is given.
FocusScope {
    id: picker

    required property MonthCalendar calendar
    property color accent: Colors.accent

    readonly property real weekHeight: Typography.grown(36)
    readonly property bool isDayFocused: activeFocus && !pages.activeFocus

    function focusTabStop(): void {
        const place = days.itemAt(picker.calendar.tabStop) as DayButton;
        if (place)
            place.forceActiveFocus(Qt.TabFocusReason);
    }

    implicitWidth: 7 * Typography.grown(40)
    implicitHeight: weeks.y + 6 * weekHeight
    LayoutMirroring.enabled: calendar.isRightToLeft
    LayoutMirroring.childrenInherit: true
    Accessible.role: Accessible.Grouping
    Accessible.name: calendar.monthTitle

    Keys.onPressed: event => {
        // They are for the days, not for the buttons beside the month.
        if (pages.activeFocus)
            return;
        const forward = picker.calendar.isRightToLeft ? -1 : 1;
        switch (event.key) {
        case Qt.Key_Left: picker.calendar.moveByDays(-forward); break;
        case Qt.Key_Right: picker.calendar.moveByDays(forward); break;
        case Qt.Key_Up: picker.calendar.moveByDays(-7); break;
        case Qt.Key_Down: picker.calendar.moveByDays(7); break;
        case Qt.Key_PageUp: picker.calendar.moveByMonths(-1); break;
        case Qt.Key_PageDown: picker.calendar.moveByMonths(1); break;
        case Qt.Key_Home: picker.calendar.moveToStartOfWeek(); break;
        case Qt.Key_End: picker.calendar.moveToEndOfWeek(); break;
        default: return;
        }
        event.accepted = true;
    }

    Connections {
        target: picker.calendar

        function onMoved(): void {
            picker.focusTabStop();
        }
        // The day that had the focus may now be a blank place or another day.
        function onTabStopChanged(): void {
            if (picker.isDayFocused)
                picker.focusTabStop();
        }
    }

    Item {
        id: head

        width: parent.width
        height: Typography.grown(28)

        PlainText {
            anchors.left: parent.left
            anchors.leftMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            text: picker.calendar.monthTitle
            font: Typography.system(15, Font.DemiBold)
        }
        FocusScope {
            id: pages

            anchors.right: parent.right
            width: 2 * head.height + 4
            height: parent.height

            MonthArrow {
                anchors.left: parent.left
                accessibleLabel: "Previous month"
                sign: picker.calendar.isRightToLeft ? "›" : "‹"
                isAvailable: picker.calendar.canShowPreviousMonth
                accent: picker.accent
                onClicked: picker.calendar.showMonth(-1)
            }
            MonthArrow {
                anchors.right: parent.right
                accessibleLabel: "Next month"
                sign: picker.calendar.isRightToLeft ? "‹" : "›"
                isAvailable: picker.calendar.canShowNextMonth
                accent: picker.accent
                onClicked: picker.calendar.showMonth(1)
            }
        }
    }
    Row {
        id: weekdays

        anchors.top: head.bottom
        anchors.topMargin: 8
        width: parent.width

        Repeater {
            model: picker.calendar.weekdayNames

            PlainText {
                required property string modelData

                width: weekdays.width / 7
                horizontalAlignment: Text.AlignHCenter
                elide: Text.ElideRight
                text: modelData
                font: Typography.system(11, Font.DemiBold)
                color: Colors.secondaryLabel
            }
        }
    }
    Grid {
        id: weeks

        anchors.top: weekdays.bottom
        anchors.topMargin: 8
        width: parent.width
        columns: 7

        Repeater {
            id: days

            model: picker.calendar

            DayButton {
                required property int index

                width: weeks.width / 7
                height: (picker.height - weeks.y) / 6
                accent: picker.accent
                // What has the focus must stay a stop until it has lost it.
                focusPolicy: picker.calendar.tabStop === index || activeFocus ? Qt.TabFocus : Qt.NoFocus
                onClicked: picker.calendar.pick(index)
            }
        }
    }
}
