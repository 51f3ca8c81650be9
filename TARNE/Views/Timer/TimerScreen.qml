pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The first tab: a setup face and a session face, and the three sheets that lead through a session.
Rectangle {
    id: screen

    required property TimerView view

    readonly property string navigationTitle: "⏱️ Timer"
    // Follows the view's mode by way of the handler alone.
    property bool isSetupShown: true

    color: Colors.background
    Accessible.role: Accessible.Pane
    Accessible.name: screen.navigationTitle
    Keys.forwardTo: [column]
    Component.onCompleted: screen.isSetupShown = screen.view.isSetupMode

    // The button of the face that comes has the focus as the button of the face that goes had it.
    Connections {
        target: screen.view

        function onIsSetupModeChanged(): void {
            const reason = screen.Window.activeFocusItem?.["focusReason"] ?? Qt.OtherFocusReason;
            screen.isSetupShown = screen.view.isSetupMode;
            const focused = screen.Window.activeFocusItem;
            if (focused?.["focusReason"] !== undefined)
                focused["focusReason"] = reason;
            column.scrollToTop();
        }
    }

    ScrollColumn {
        id: column

        anchors.fill: parent
        horizontalPadding: Layout.spacingMedium
        bottomPadding: Layout.spacingMedium

        SetupFace {
            width: parent.width
            visible: screen.isSetupShown
            view: screen.view
        }
        SessionFace {
            width: parent.width
            visible: !screen.isSetupShown
            view: screen.view
        }
    }

    Sheet {
        isPresented: screen.view.isShown && screen.view.showDurationSelection
        document: Qt.resolvedUrl("DurationSelectionSheet.qml")
        view: screen.view.durationSelection
    }
    Sheet {
        isPresented: screen.view.isShown && screen.view.showSessionNotes
        document: Qt.resolvedUrl("SessionNotesSheet.qml")
        view: screen.view.sessionNotes
    }
    Sheet {
        isPresented: screen.view.isShown && screen.view.showSessionReflection
        document: Qt.resolvedUrl("SessionReflectionSheet.qml")
        view: screen.view.sessionReflection
    }
}
