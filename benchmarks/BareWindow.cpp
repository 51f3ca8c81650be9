// The least that a timer of Qt Quick can cost: a window with three texts, one of them a count-down.
// What whole_process.py measures beside TARNE.

#include <QGuiApplication>
#include <QQmlApplicationEngine>

int main(int argc, char *argv[]) {
    QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine;
    engine.loadData(R"(
        import QtQuick

        Window {
            id: window
            property int remaining: 1500
            width: 500
            height: 660
            visible: true
            title: "Bare window"

            Column {
                anchors.centerIn: parent
                spacing: 20

                Text { text: "Write the report" }
                Text { text: window.remaining; font.pixelSize: 48 }
                Text { text: "seconds are left" }
            }
            Timer {
                interval: 1000
                repeat: true
                running: true
                onTriggered: --window.remaining
            }
        }
    )");
    return QGuiApplication::exec();
}
