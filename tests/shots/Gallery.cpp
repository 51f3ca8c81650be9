#include "Gallery.h"

#include <QDir>
#include <QEventLoop>
#include <QQmlEngine>
#include <QQmlError>
#include <QQuickView>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::shots {

Gallery::Gallery(QString folder) : m_folder(std::move(folder)) {}

Gallery::~Gallery() = default;

void Gallery::take(const QString &name, const QUrl &url, const QVariantMap &properties,
                   const std::function<void(QQuickView &)> &prepare, const QSize &size) {
    QQuickView window;
    window.engine()->addImportPath(u"qrc:/qt/qml"_s);
    window.setResizeMode(QQuickView::SizeRootObjectToView);
    window.resize(size);
    window.setInitialProperties(properties);
    window.setSource(url);
    window.show();
    letRest();
    if (prepare) {
        prepare(window);
        letRest();
    }
    const QString path = QDir(m_folder).filePath(name + u".png"_s);
    const bool saved = window.status() == QQuickView::Ready && window.grabWindow().save(path);
    if (saved)
        std::printf("%s\n", qPrintable(path));
    else
        std::fprintf(stderr, "could not draw %s\n", qPrintable(path));
    m_isComplete = m_isComplete && saved;
}

void letRest() {
    QEventLoop loop;
    QTimer::singleShot(600ms, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace tarne::shots
