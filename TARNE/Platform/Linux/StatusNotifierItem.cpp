#include "StatusNotifierItem.h"

#include <QDBusAbstractAdaptor>
#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>

#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {

/// A picture in an item's properties: (iiay). Ours has none, since its icon has a name.
struct PanelPixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;
};

/// (sa(iiay)ss)
struct PanelToolTip {
    QString iconName;
    QList<PanelPixmap> pixmaps;
    QString title;
    QString text;
};

static QDBusArgument &operator<<(QDBusArgument &argument, const PanelPixmap &pixmap) {
    argument.beginStructure();
    argument << pixmap.width << pixmap.height << pixmap.pixels;
    argument.endStructure();
    return argument;
}

static const QDBusArgument &operator>>(const QDBusArgument &argument, PanelPixmap &pixmap) {
    argument.beginStructure();
    argument >> pixmap.width >> pixmap.height >> pixmap.pixels;
    argument.endStructure();
    return argument;
}

static QDBusArgument &operator<<(QDBusArgument &argument, const PanelToolTip &toolTip) {
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.pixmaps << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

static const QDBusArgument &operator>>(const QDBusArgument &argument, PanelToolTip &toolTip) {
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.pixmaps >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

namespace {

constexpr QLatin1StringView itemPath{"/StatusNotifierItem"};
constexpr QLatin1StringView menuPath{"/StatusNotifierItem/Menu"};

const DBusAddress watcherAddress{u"org.kde.StatusNotifierWatcher"_s, u"/StatusNotifierWatcher"_s,
                                 u"org.kde.StatusNotifierWatcher"_s};
const DBusAddress busAddress{u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                             u"org.freedesktop.DBus"_s};

class ItemAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category FINAL)
    Q_PROPERTY(QString Id READ id FINAL)
    Q_PROPERTY(QString Title READ title FINAL)
    Q_PROPERTY(QString Status READ status FINAL)
    Q_PROPERTY(int WindowId READ windowId FINAL)
    Q_PROPERTY(QString IconName READ iconName FINAL)
    Q_PROPERTY(QList<tarne::PanelPixmap> IconPixmap READ noPixmap FINAL)
    Q_PROPERTY(QString OverlayIconName READ noName FINAL)
    Q_PROPERTY(QList<tarne::PanelPixmap> OverlayIconPixmap READ noPixmap FINAL)
    Q_PROPERTY(QString AttentionIconName READ noName FINAL)
    Q_PROPERTY(QList<tarne::PanelPixmap> AttentionIconPixmap READ noPixmap FINAL)
    Q_PROPERTY(QString AttentionMovieName READ noName FINAL)
    Q_PROPERTY(tarne::PanelToolTip ToolTip READ toolTip FINAL)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu FINAL)
    Q_PROPERTY(QDBusObjectPath Menu READ menu FINAL)

public:
    explicit ItemAdaptor(StatusNotifierItem *item) : QDBusAbstractAdaptor(item), m_item(*item) {
        connect(item, &StatusNotifierItem::titleChanged, this, &ItemAdaptor::NewTitle);
        connect(item, &StatusNotifierItem::toolTipChanged, this, &ItemAdaptor::NewToolTip);
    }

    [[nodiscard]] static QString category() { return u"ApplicationStatus"_s; }
    [[nodiscard]] QString id() const { return m_item.identity().id; }
    [[nodiscard]] QString title() const { return m_item.content().title; }
    [[nodiscard]] static QString status() { return u"Active"_s; }
    [[nodiscard]] static int windowId() { return 0; }
    [[nodiscard]] QString iconName() const { return m_item.identity().iconName; }
    [[nodiscard]] static QString noName() { return {}; }
    [[nodiscard]] static QList<PanelPixmap> noPixmap() { return {}; }
    [[nodiscard]] PanelToolTip toolTip() const {
        return {iconName(), {}, m_item.content().toolTipHead, m_item.content().toolTip};
    }
    [[nodiscard]] static bool itemIsMenu() { return false; }
    [[nodiscard]] static QDBusObjectPath menu() { return QDBusObjectPath(menuPath); }

public Q_SLOTS:
    void Activate(int, int) { m_item.activate(); }
    void SecondaryActivate(int, int) { m_item.activate(); }
    /// A panel that asks for this cannot draw our menu.
    void ContextMenu(int, int) { m_item.activate(); }
    void Scroll(int, const QString &) {}
    void ProvideXdgActivationToken(const QString &token) { m_item.noteToken(token); }

Q_SIGNALS:
    void NewTitle();
    void NewToolTip();
    // What a panel may listen to and never changes here.
    void NewIcon();
    void NewAttentionIcon();
    void NewOverlayIcon();
    void NewStatus(const QString &status);

private:
    StatusNotifierItem &m_item;
};

} // namespace

StatusNotifierItem::StatusNotifierItem(const QDBusConnection &sessionBus, Identity identity,
                                       Handlers handlers)
    : m_bus(sessionBus),
      m_identity(std::move(identity)),
      m_handlers(std::move(handlers)),
      m_menu(sessionBus, menuPath,
             [this](int entry) { m_handlers.chosen(entry, std::exchange(m_token, {})); }),
      m_watcher(sessionBus, watcherAddress),
      m_names(sessionBus, busAddress) {
    qDBusRegisterMetaType<PanelPixmap>();
    qDBusRegisterMetaType<QList<PanelPixmap>>();
    qDBusRegisterMetaType<PanelToolTip>();
    new ItemAdaptor(this);
    connect(&m_watcher, &DBusService::appeared, this, &StatusNotifierItem::appear);
    connect(&m_watcher, &DBusService::vanished, this, &StatusNotifierItem::disappear);
    m_names.call(
        u"NameHasOwner"_s, {watcherAddress.service}, this, [this](const QDBusMessage &reply) {
            if (reply.type() == QDBusMessage::ReplyMessage && reply.arguments().value(0).toBool())
                appear();
        });
}

StatusNotifierItem::~StatusNotifierItem() {
    disappear();
}

void StatusNotifierItem::appear() {
    if (std::exchange(m_isThere, true))
        return;
    // The menu comes before the item, and the item before its name is told.
    m_menu.appear();
    m_bus.registerObject(itemPath, this);
    m_watcher.tell(u"RegisterStatusNotifierItem"_s, {QString(itemPath)});
}

void StatusNotifierItem::disappear() {
    if (!std::exchange(m_isThere, false))
        return;
    m_bus.unregisterObject(itemPath);
    m_menu.disappear();
}

void StatusNotifierItem::setContent(Content content) {
    const Content former = std::exchange(m_content, std::move(content));
    m_menu.setEntries(m_content.entries);
    // Without a watcher the object is not on the bus, and these reach nobody.
    if (m_content.title != former.title)
        Q_EMIT titleChanged();
    if (m_content.toolTip != former.toolTip || m_content.toolTipHead != former.toolTipHead)
        Q_EMIT toolTipChanged();
}

void StatusNotifierItem::activate() {
    m_handlers.activated(std::exchange(m_token, {}));
}

} // namespace tarne

#include "StatusNotifierItem.moc"
