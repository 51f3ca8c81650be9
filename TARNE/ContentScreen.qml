pragma ComponentBehavior: Bound
import QtQuick
import TARNE
import TARNE.Styling

// The four tabs and the screen of the selected one.
FocusScope {
    id: content

    required property ContentView contentView

    // A tab that has the focus leaves the keys that scroll to the screen it has brought up.
    Keys.forwardTo: tabs.activeFocus ? [pages.children[contentView.selectedTab]] : []

    TabStrip {
        id: tabs

        anchors.horizontalCenter: parent.horizontalCenter
        contentView: content.contentView
    }
    Item {
        id: pages

        anchors.top: tabs.bottom
        anchors.topMargin: Layout.spacingSmall
        anchors.bottom: parent.bottom
        width: parent.width
        clip: true

        TabPage {
            tabIndex: 0
            selectedTab: content.contentView.selectedTab
            screen: Qt.resolvedUrl("Views/TimerScreen.qml")
            view: content.contentView.timerView
        }
        TabPage {
            tabIndex: 1
            selectedTab: content.contentView.selectedTab
            screen: Qt.resolvedUrl("Views/InsightsScreen.qml")
            view: content.contentView.insightsView
        }
        TabPage {
            tabIndex: 2
            selectedTab: content.contentView.selectedTab
            screen: Qt.resolvedUrl("Views/HistoryScreen.qml")
            view: content.contentView.historyView
        }
        TabPage {
            tabIndex: 3
            selectedTab: content.contentView.selectedTab
            screen: Qt.resolvedUrl("Views/SettingsScreen.qml")
            view: content.contentView.settingsView
        }
    }
}
