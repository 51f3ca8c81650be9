pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The sheet that shows an exported text.
SheetPanel {
    id: panel

    required property ExportSheet view

    ownWidth: 700
    ownHeight: 500
    accessibleName: title.text

    header: Item {
        width: parent?.width ?? 0
        implicitHeight: 24 + done.implicitHeight + 20

        PlainText {
            id: title

            x: 24
            anchors.verticalCenter: done.verticalCenter
            text: "Export Session History"
            font: Typography.weighted(Typography.systemTitle2, Font.DemiBold)
            Accessible.role: Accessible.Heading
        }
        BorderedButton {
            id: done

            anchors.right: parent.right
            anchors.rightMargin: 24
            y: 24
            text: "Done"
            onClicked: panel.view.done()
        }
    }
    footer: Item {
        width: parent?.width ?? 0
        implicitHeight: 20 + copy.implicitHeight + 24

        BorderedButton {
            id: copy

            x: 24
            y: 20
            isProminent: true
            text: "Copy to Clipboard"
            onClicked: panel.view.copyToClipboard()
        }
    }

    Rectangle {
        x: 24
        width: panel.width - 48
        height: panel.height - panel.headerHeight - panel.footerHeight
        radius: 8
        color: Colors.textBackground

        ScrollColumn {
            anchors.fill: parent
            horizontalPadding: 16
            topPadding: 16
            bottomPadding: 16
            activeFocusOnTab: true
            Accessible.role: Accessible.Pane
            Accessible.name: title.text

            PlainText {
                width: parent.width
                text: panel.view.text
                font: Typography.systemBody
                horizontalAlignment: Text.AlignLeft
                wrapMode: Text.Wrap
            }
        }
    }
}
