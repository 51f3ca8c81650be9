pragma ComponentBehavior: Bound
import QtQuick
import TARNE.Styling
import TARNE.Views

// The first tab: a setup face and a session face, and the three sheets that lead through a session.
Rectangle {
    id: screen

    required property TimerView view

    readonly property string navigationTitle: "⏱️ Timer"

    color: Colors.background
    Accessible.role: Accessible.Pane
    Accessible.name: screen.navigationTitle

    ScrollColumn {
        anchors.fill: parent
        horizontalPadding: Layout.spacingMedium
        bottomPadding: Layout.spacingMedium

        SetupFace {
            width: parent.width
            visible: screen.view.isSetupMode
            view: screen.view
        }
        SessionFace {
            width: parent.width
            visible: !screen.view.isSetupMode
            view: screen.view
        }
    }

    Sheet {
        isPresented: screen.view.isShown && screen.view.showDurationSelection
        content: Component {
            DurationSelectionSheet {
                view: screen.view.durationSelection
            }
        }
    }
    Sheet {
        isPresented: screen.view.isShown && screen.view.showSessionNotes
        content: Component {
            SessionNotesSheet {
                view: screen.view.sessionNotes
            }
        }
    }
    Sheet {
        isPresented: screen.view.isShown && screen.view.showSessionReflection
        content: Component {
            SessionReflectionSheet {
                view: screen.view.sessionReflection
            }
        }
    }
}
