pragma ComponentBehavior: Bound
import QtQuick
import TARNE
import TARNE.Styling
import TARNE.Views

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
            hasScreen: content.contentView.timerView !== null
            screen: timerScreen
        }
        TabPage {
            tabIndex: 1
            selectedTab: content.contentView.selectedTab
            hasScreen: content.contentView.insightsView !== null
            screen: insightsScreen
        }
        TabPage {
            tabIndex: 2
            selectedTab: content.contentView.selectedTab
            hasScreen: content.contentView.historyView !== null
            screen: historyScreen
        }
        TabPage {
            tabIndex: 3
            selectedTab: content.contentView.selectedTab
            hasScreen: content.contentView.settingsView !== null
            screen: settingsScreen
        }
    }

    Component {
        id: timerScreen

        TimerScreen {
            view: content.contentView.timerView
        }
    }
    Component {
        id: insightsScreen

        InsightsScreen {
            view: content.contentView.insightsView
        }
    }
    Component {
        id: historyScreen

        HistoryScreen {
            view: content.contentView.historyView
        }
    }
    Component {
        id: settingsScreen

        SettingsScreen {
            view: content.contentView.settingsView
        }
    }
}
