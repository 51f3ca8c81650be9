pragma ComponentBehavior: Bound
import QtQuick
import TARNE
import TARNE.Styling
import TARNE.Views

// The four tabs and the screen of the selected one.
FocusScope {
    id: content

    required property ContentView contentView

    TabStrip {
        id: tabs

        anchors.horizontalCenter: parent.horizontalCenter
        contentView: content.contentView
    }
    Item {
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
        id: settingsScreen

        SettingsScreen {
            view: content.contentView.settingsView
        }
    }
}
