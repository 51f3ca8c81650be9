#pragma once

// What travels on the bus by com.canonical.dbusmenu.

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QVariantMap>

namespace tarne::dbusmenu {

/// An entry with those below it, each a `Layout` in a variant: (ia{sv}av).
struct Layout {
    int id = 0;
    QVariantMap properties;
    QList<QDBusVariant> children;
};

/// The properties of one entry: (ia{sv}).
struct EntryProperties {
    int id = 0;
    QVariantMap properties;
};

/// What happened to an entry: (isvu).
struct Event {
    int id = 0;
    QString kind;
    QDBusVariant data;
    uint timestamp = 0;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Layout &layout);
const QDBusArgument &operator>>(const QDBusArgument &argument, Layout &layout);
QDBusArgument &operator<<(QDBusArgument &argument, const EntryProperties &entry);
const QDBusArgument &operator>>(const QDBusArgument &argument, EntryProperties &entry);
QDBusArgument &operator<<(QDBusArgument &argument, const Event &event);
const QDBusArgument &operator>>(const QDBusArgument &argument, Event &event);

/// To be called before any of them travels.
void registerTypes();

} // namespace tarne::dbusmenu
