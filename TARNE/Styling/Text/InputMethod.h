#pragma once

#include <QGuiApplication>
#include <QInputMethod>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace tarne {

/// The desktop's input method, by a type that the QML tools know.
class InputMethod : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// What is still being composed becomes part of the text that it stands in.
    Q_INVOKABLE void commit() { QGuiApplication::inputMethod()->commit(); }
};

} // namespace tarne
