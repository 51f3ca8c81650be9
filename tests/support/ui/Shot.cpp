// tarne_shot <document.qml> <out.png> [<width>x<height>] [<device pixel ratio>] [<milliseconds>]
//
// Draws a QML document off screen, with the software scene graph, into a picture to be looked at:
//
//     build/dev/bin/tarne_shot /tmp/look.qml /tmp/look.png 800x600
//
// where look.qml is any item, for instance
//
//     import QtQuick
//     import TARNE.Styling
//     Rectangle { PrimaryButton { anchors.centerIn: parent; text: "Next" } }
//
// The picture is taken after the given time (300 ms), when what moves on appearing has come to
// rest. Screens that need a view object are drawn from a test instead: `UiDriver::grab(path)`.

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickView>
#include <QTimer>
#include <QtQml/qqmlextensionplugin.h>

#include <cstdio>

Q_IMPORT_QML_PLUGIN(TARNE_StylingPlugin)

using namespace Qt::StringLiterals;

int main(int argc, char **argv) {
    if (argc < 3) {
        std::fputs("tarne_shot <document.qml> <out.png> [<width>x<height>] [<ratio>] [<ms>]\n",
                   stderr);
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    if (argc > 4)
        qputenv("QT_SCALE_FACTOR", argv[4]);
    const QGuiApplication application(argc, argv);
    QSize size(1000, 700);
    if (argc > 3) {
        const QStringList sides = QString::fromLocal8Bit(argv[3]).split(u'x');
        size = QSize(sides.value(0).toInt(), sides.value(1).toInt());
    }
    QQuickView view;
    view.engine()->addImportPath(u"qrc:/qt/qml"_s);
    view.setResizeMode(QQuickView::SizeRootObjectToView);
    view.resize(size);
    view.setSource(QUrl::fromLocalFile(QString::fromLocal8Bit(argv[1])));
    if (view.status() != QQuickView::Ready)
        return 1;
    view.show();
    int result = 1;
    QTimer::singleShot(argc > 5 ? atoi(argv[5]) : 300, &view, [&] {
        result = view.grabWindow().save(QString::fromLocal8Bit(argv[2])) ? 0 : 1;
        QGuiApplication::exit(result);
    });
    return QGuiApplication::exec();
}
