pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// The panel of a sheet: header and footer stay, the body between them scrolls when the panel is
// higher than the window less 32. `ownHeight` is the height that it asks for; at 0 it is as high as
// what it holds. It is `ownWidth` wide, and wider for larger texts, as far as the window goes.
FocusScope {
    id: panel

    property real ownWidth: 0
    property real ownHeight: 0
    property Item header: null
    property Item footer: null
    default property alias body: scroll.content
    property alias revealsFocus: scroll.revealsFocus

    property bool hasDragIndicator: false
    property alias color: ground.color
    property alias cornerRadius: ground.cornerRadius
    property alias shadowColor: ground.shadowColor
    property alias shadowRadius: ground.shadowRadius
    property alias shadowOffset: ground.shadowOffset
    property string accessibleName

    readonly property real headerHeight: header ? header.implicitHeight : 0
    readonly property real footerHeight: footer ? footer.implicitHeight : 0
    readonly property real naturalHeight: headerHeight + scroll.contentHeight + footerHeight
    readonly property real availableHeight: Window.height > 0 ? Window.height - 32 : Infinity

    // Brings what the body holds into view.
    function show(item: Item): void {
        scroll.show(item);
    }

    implicitWidth: Math.max(ownWidth, Math.min(Typography.grown(ownWidth), Window.width - 32))
    implicitHeight: Math.min(ownHeight > 0 ? ownHeight : naturalHeight, availableHeight)
    Accessible.role: Accessible.Dialog
    Accessible.name: accessibleName
    // The keys that nothing in the panel has a use for scroll its body.
    Keys.forwardTo: [scroll]

    ShadowedBox {
        id: ground

        anchors.fill: parent
        color: Colors.regularMaterial
        cornerRadius: 16
        shadowColor: Colors.withOpacity(Colors.black, 0.08)
        shadowRadius: 24
        shadowOffset: 8
    }
    Item {
        id: headerSlot

        width: parent.width
        height: panel.headerHeight
        children: panel.header ? [panel.header] : []
    }
    ScrollColumn {
        id: scroll

        anchors.top: headerSlot.bottom
        anchors.bottom: footerSlot.top
        width: parent.width
    }
    Item {
        id: footerSlot

        anchors.bottom: parent.bottom
        width: parent.width
        height: panel.footerHeight
        children: panel.footer ? [panel.footer] : []
    }
    RoundedBox {
        anchors.horizontalCenter: parent.horizontalCenter
        y: 5
        visible: panel.hasDragIndicator
        width: 36
        height: 5
        radius: 2.5
        color: Colors.tertiaryLabel
    }
}
