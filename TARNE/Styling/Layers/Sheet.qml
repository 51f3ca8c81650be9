pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling

// Presents `content`, usually a SheetPanel, as a modal panel over the whole window while
// `isPresented`. It takes no room where it is declared. The content is made anew on each
// presentation and gone with its end; only what it contains closes it, never the Escape key and
// never a press beside it. Sheets declared inside a sheet stack above it.
Item {
    id: sheet

    property bool isPresented: false
    // What is presented, or the address of its document, which is loaded with the first presentation,
    // and the `view` that this requires.
    property Component content: null
    property url document
    property QtObject view: null

    // What is presented, or null.
    readonly property Item item: slot.item

    ModalLayer {
        id: layer

        isPresented: sheet.isPresented

        Rectangle {
            anchors.fill: parent
            color: Colors.withOpacity(Colors.black, 0.2)
        }
        ComponentSlot {
            id: slot

            anchors.centerIn: parent
            focus: true
            // Made when the layer has noted where the focus was, since the content may take it.
            isActive: layer.isPresented
            component: sheet.content
            document: sheet.document
            view: sheet.view
        }
    }
}
