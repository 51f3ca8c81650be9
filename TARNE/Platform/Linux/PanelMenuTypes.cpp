#include "PanelMenuTypes.h"

#include <QDBusMetaType>

namespace tarne::dbusmenu {

QDBusArgument &operator<<(QDBusArgument &argument, const Layout &layout) {
    argument.beginStructure();
    argument << layout.id << layout.properties << layout.children;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Layout &layout) {
    argument.beginStructure();
    argument >> layout.id >> layout.properties >> layout.children;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const EntryProperties &entry) {
    argument.beginStructure();
    argument << entry.id << entry.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, EntryProperties &entry) {
    argument.beginStructure();
    argument >> entry.id >> entry.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const Event &event) {
    argument.beginStructure();
    argument << event.id << event.kind << event.data << event.timestamp;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Event &event) {
    argument.beginStructure();
    argument >> event.id >> event.kind >> event.data >> event.timestamp;
    argument.endStructure();
    return argument;
}

void registerTypes() {
    qDBusRegisterMetaType<Layout>();
    qDBusRegisterMetaType<EntryProperties>();
    qDBusRegisterMetaType<QList<EntryProperties>>();
    qDBusRegisterMetaType<Event>();
    qDBusRegisterMetaType<QList<Event>>();
    qDBusRegisterMetaType<QList<int>>();
}

} // namespace tarne::dbusmenu
