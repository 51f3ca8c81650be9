// schedule_harness [locale]
//
// Presents the schedule screen, which no part of the program does, over goals of its own until it
// is closed. The goals live in memory, time stands still on 2026-03-02, and nobody is notified. A
// locale such as de_DE or ar_EG gives names, digits and the order of the week.

#include "ScheduleStage.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickView>

using namespace Qt::StringLiterals;

int main(int argc, char **argv) {
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    tarne::test::ScheduleStage stage(QLocale(arguments.value(1, u"en_US"_s)));
    stage.addSampleGoals();

    QQuickView window;
    window.engine()->addImportPath(u"qrc:/qt/qml"_s);
    window.setInitialProperties({{u"view"_s, QVariant::fromValue(&stage.view())}});
    window.setSource(QUrl(u"qrc:/qt/qml/TARNE/Views/ScheduleScreen.qml"_s));
    window.setResizeMode(QQuickView::SizeRootObjectToView);
    window.resize(900, 700);
    const auto closing = stage.isPresented.onValueChanged([&] { window.close(); });
    window.show();
    return QGuiApplication::exec();
}
