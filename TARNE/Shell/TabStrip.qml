pragma ComponentBehavior: Bound
import QtQuick
import TARNE
import TARNE.Styling

// The four tabs. The arrow keys move between them, as in every tab bar.
FocusScope {
    id: strip

    required property ContentView contentView

    implicitWidth: row.implicitWidth + 8
    implicitHeight: row.implicitHeight + 8

    Accessible.role: Accessible.PageTabList
    Accessible.name: "Tabs"
    Keys.onLeftPressed: strip.select(strip.contentView.selectedTab - 1)
    Keys.onRightPressed: strip.select(strip.contentView.selectedTab + 1)

    function select(index: int) {
        const tab = buttons.itemAt(index);
        if (!tab)
            return;
        strip.contentView.selectedTab = index;
        tab.forceActiveFocus(Qt.TabFocusReason);
    }

    RoundedBox {
        anchors.fill: parent
        color: Colors.secondaryFill
        radius: 9
    }
    Row {
        id: row

        x: 4
        y: 4
        spacing: 2

        Repeater {
            id: buttons

            model: strip.contentView.tabs

            Pressable {
                id: tab

                required property int index
                required property tabItem modelData
                readonly property bool isSelected: strip.contentView.selectedTab === index

                text: tab.modelData.label
                implicitWidth: Typography.grown(112)
                implicitHeight: Typography.grown(30)
                focus: isSelected
                focusPolicy: isSelected ? Qt.TabFocus : Qt.NoFocus
                hasPointingHand: false
                accessibleRole: Accessible.PageTab
                Accessible.selected: isSelected
                Accessible.selectable: true
                onClicked: strip.contentView.selectedTab = index

                background: RoundedBox {
                    color: tab.isSelected ? Colors.white : "transparent"
                    radius: 6
                    outlineColor: tab.isSelected ? Colors.border : "transparent"
                    outlineWidth: tab.isSelected ? 0.5 : 0

                    FocusRing {
                        isShown: tab.visualFocus
                        cornerRadius: 6
                    }
                }
                contentItem: Item {
                    Row {
                        anchors.centerIn: parent
                        spacing: 6

                        SymbolIcon {
                            anchors.verticalCenter: parent.verticalCenter
                            symbol: tab.modelData.icon
                            size: Typography.grown(14)
                            color: tab.isSelected ? Colors.accent : Colors.secondaryText
                        }
                        ControlText {
                            anchors.verticalCenter: parent.verticalCenter
                            text: tab.text
                            font: tab.isSelected ? Typography.emphasis : Typography.body
                            color: tab.isSelected ? Colors.primaryText : Colors.secondaryText
                        }
                    }
                }
            }
        }
    }
}
