#include "PanelMenu.h"

#include "PanelMenuTypes.h"

#include <QDBusAbstractAdaptor>
#include <QDBusError>
#include <QDBusMessage>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

constexpr int rootId = 0;

QVariantMap chosenFrom(const QVariantMap &all, const QStringList &names) {
    if (names.isEmpty())
        return all;
    QVariantMap some;
    for (const QString &name : names) {
        if (const auto found = all.constFind(name); found != all.cend())
            some.insert(name, *found);
    }
    return some;
}

/// The protocol takes a single underscore for the mark of an access key.
QVariantMap propertiesOf(const PanelMenuEntry &entry) {
    QVariantMap properties{{u"label"_s, QString(entry.label).replace(u'_', u"__"_s)}};
    if (entry.isChecked) {
        properties[u"toggle-type"_s] = u"checkmark"_s;
        properties[u"toggle-state"_s] = *entry.isChecked ? 1 : 0;
    }
    return properties;
}

QVariantMap rootProperties() {
    return {{u"children-display"_s, u"submenu"_s}};
}

class MenuAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version FINAL)
    Q_PROPERTY(QString TextDirection READ textDirection FINAL)
    Q_PROPERTY(QString Status READ status FINAL)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath FINAL)

public:
    MenuAdaptor(PanelMenu *menu, QDBusConnection bus)
        : QDBusAbstractAdaptor(menu), m_menu(*menu), m_bus(std::move(bus)) {
        connect(menu, &PanelMenu::entriesChanged, this,
                [this] { Q_EMIT LayoutUpdated(m_menu.revision(), rootId); });
    }

    [[nodiscard]] static uint version() { return 3; }
    [[nodiscard]] static QString textDirection() { return u"ltr"_s; }
    [[nodiscard]] static QString status() { return u"normal"_s; }
    [[nodiscard]] static QStringList iconThemePath() { return {}; }

public Q_SLOTS:
    uint GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                   const QDBusMessage &call, tarne::dbusmenu::Layout &layout);
    QList<tarne::dbusmenu::EntryProperties> GetGroupProperties(const QList<int> &ids,
                                                               const QStringList &propertyNames);
    QDBusVariant GetProperty(int id, const QString &name, const QDBusMessage &call);
    void Event(int id, const QString &eventId, const QDBusVariant &, uint);
    QList<int> EventGroup(const QList<tarne::dbusmenu::Event> &events);
    bool AboutToShow(int) { return false; } // Every change was told when it was made.
    QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors);

Q_SIGNALS:
    void ItemsPropertiesUpdated(const QList<tarne::dbusmenu::EntryProperties> &updatedProps,
                                const QList<tarne::dbusmenu::EntryProperties> &removedProps);
    void LayoutUpdated(uint revision, int parent);

private:
    [[nodiscard]] const PanelMenuEntry *find(int id) const {
        const auto found = std::ranges::find(m_menu.entries(), id, &PanelMenuEntry::id);
        return found == m_menu.entries().end() ? nullptr : &*found;
    }
    void refuse(const QDBusMessage &call, const QString &reason) {
        call.setDelayedReply(true); // The answer is this one.
        m_bus.send(call.createErrorReply(QDBusError::InvalidArgs, reason));
    }

    PanelMenu &m_menu;
    QDBusConnection m_bus;
};

uint MenuAdaptor::GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                            const QDBusMessage &call, dbusmenu::Layout &layout) {
    layout.id = parentId;
    if (parentId == rootId) {
        layout.properties = chosenFrom(rootProperties(), propertyNames);
        if (recursionDepth == 0)
            return m_menu.revision();
        for (const PanelMenuEntry &entry : m_menu.entries())
            layout.children += QDBusVariant(QVariant::fromValue(
                dbusmenu::Layout{entry.id, chosenFrom(propertiesOf(entry), propertyNames), {}}));
    } else if (const PanelMenuEntry *const entry = find(parentId)) {
        layout.properties = chosenFrom(propertiesOf(*entry), propertyNames);
    } else {
        refuse(call, u"There is no such entry."_s);
    }
    return m_menu.revision();
}

QList<dbusmenu::EntryProperties> MenuAdaptor::GetGroupProperties(const QList<int> &ids,
                                                                 const QStringList &propertyNames) {
    QList<dbusmenu::EntryProperties> all;
    if (ids.isEmpty() || ids.contains(rootId))
        all += {rootId, chosenFrom(rootProperties(), propertyNames)};
    for (const PanelMenuEntry &entry : m_menu.entries()) {
        if (ids.isEmpty() || ids.contains(entry.id))
            all += {entry.id, chosenFrom(propertiesOf(entry), propertyNames)};
    }
    return all;
}

QDBusVariant MenuAdaptor::GetProperty(int id, const QString &name, const QDBusMessage &call) {
    const PanelMenuEntry *const entry = find(id);
    const QVariantMap all = entry          ? propertiesOf(*entry)
                            : id == rootId ? rootProperties()
                                           : QVariantMap();
    if (!all.contains(name))
        refuse(call, u"There is no such property."_s);
    return QDBusVariant(all.value(name, QString()));
}

void MenuAdaptor::Event(int id, const QString &eventId, const QDBusVariant &, uint) {
    if (eventId == "clicked"_L1)
        m_menu.choose(id);
}

QList<int> MenuAdaptor::EventGroup(const QList<dbusmenu::Event> &events) {
    QList<int> unknown;
    for (const dbusmenu::Event &event : events) {
        if (event.id != rootId && !find(event.id))
            unknown += event.id;
        else
            Event(event.id, event.kind, event.data, event.timestamp);
    }
    return unknown;
}

QList<int> MenuAdaptor::AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors) {
    for (const int id : ids) {
        if (id != rootId && !find(id))
            idErrors += id;
    }
    return {};
}

} // namespace

PanelMenu::PanelMenu(QDBusConnection bus, QString path, Chosen chosen)
    : m_bus(std::move(bus)), m_path(std::move(path)), m_chosen(std::move(chosen)) {
    dbusmenu::registerTypes();
    new MenuAdaptor(this, m_bus);
}

void PanelMenu::appear() {
    m_bus.registerObject(m_path, this);
}

void PanelMenu::disappear() {
    m_bus.unregisterObject(m_path);
}

void PanelMenu::setEntries(std::vector<PanelMenuEntry> entries) {
    if (m_entries == entries)
        return;
    m_entries = std::move(entries);
    ++m_revision;
    Q_EMIT entriesChanged();
}

void PanelMenu::choose(int id) {
    if (std::ranges::find(m_entries, id, &PanelMenuEntry::id) != m_entries.end())
        m_chosen(id);
}

} // namespace tarne

#include "PanelMenu.moc"
