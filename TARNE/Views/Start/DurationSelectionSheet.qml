pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The first sheet of a new session: its length.
SheetPanel {
    id: sheet

    required property DurationSelectionView view

    focus: true
    ownWidth: 450
    color: Colors.background
    cornerRadius: Layout.cornerRadius
    shadowColor: Colors.shadow
    shadowRadius: 10
    shadowOffset: 5
    hasDragIndicator: true
    accessibleName: head.title

    header: SheetHead {
        id: head

        margin: Layout.padding
        topPadding: Layout.padding
        bottomPadding: 0
        title: "Select Session Duration"
        font: Typography.heading1
        closeButton.hierarchical: false
        closeButton.color: Colors.secondaryText
        onClosed: sheet.view.close()
    }

    DurationChoice {
        x: Layout.padding
        width: sheet.width - 2 * Layout.padding
        // Inside the part that scrolls, so that the larger button is not cut off.
        topPadding: Layout.spacingMedium
        view: sheet.view
    }

    footer: Item {
        width: parent?.width ?? 0
        implicitHeight: continueButton.implicitHeight + Layout.spacingMedium + Layout.padding

        PrimaryButton {
            id: continueButton

            anchors.horizontalCenter: parent.horizontalCenter
            y: Layout.spacingMedium
            text: "Continue"
            trailingSymbol: "arrow.right"
            minimumWidth: 100
            onClicked: sheet.view.submit()
        }
    }
}
