#pragma once

#include <QObject>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace tarne {

/// The order in which Tab and assistive tools come to the rows of the history. A list appends every
/// row that it makes to those that are there; while it is scrolled upwards that is the order from
/// the last to the first.
class HistoryRowOrder : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// Puts a row before those of a higher index. They all have a property `index`.
    Q_INVOKABLE static void put(QQuickItem *row, int index);
};

} // namespace tarne
