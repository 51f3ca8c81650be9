#include "StatusNotifierItem.h"

#include "EventLoop.h"
#include "PanelMenuTypes.h"
#include "PrivateBus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusVariant>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

const QString watcherName = u"org.kde.StatusNotifierWatcher"_s;
const QString itemPath = u"/StatusNotifierItem"_s;
const QString item = u"org.kde.StatusNotifierItem"_s;
const QString menu = u"com.canonical.dbusmenu"_s;

/// The desktop's watcher, on a connection of its own.
class Watcher final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")

public:
    explicit Watcher(QDBusConnection bus) : m_bus(std::move(bus)) {
        EXPECT_TRUE(m_bus.registerObject(u"/StatusNotifierWatcher"_s, this,
                                         QDBusConnection::ExportAllSlots));
        EXPECT_TRUE(m_bus.registerService(watcherName));
    }
    ~Watcher() override {
        m_bus.unregisterService(watcherName);
        m_bus.unregisterObject(u"/StatusNotifierWatcher"_s);
    }
    Watcher(const Watcher &) = delete;
    Watcher &operator=(const Watcher &) = delete;

    QStringList items; ///< Each as the sender's name and what it said.

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &said, const QDBusMessage &call) {
        items += call.service() + u' ' + said;
    }

private:
    QDBusConnection m_bus;
};

/// Hears what the item tells of itself.
class Panel final : public QObject {
    Q_OBJECT

public:
    explicit Panel(QDBusConnection bus) {
        for (const auto &signal : {u"NewTitle"_s, u"NewToolTip"_s})
            bus.connect(QString(), itemPath, item, signal, this, SLOT(note(QDBusMessage)));
        bus.connect(QString(), itemPath + u"/Menu"_s, menu, u"LayoutUpdated"_s, this,
                    SLOT(note(QDBusMessage)));
    }

    QStringList told;

private Q_SLOTS:
    void note(const QDBusMessage &message) { told += message.member(); }
};

class AnItemInThePanel : public testing::Test {
protected:
    void startWatcher() { m_watcher = std::make_unique<Watcher>(m_bus.connect()); }

    void makeItem() {
        m_item = std::make_unique<StatusNotifierItem>(
            m_connection, StatusNotifierItem::Identity{u"com.example"_s, u"an-icon"_s},
            StatusNotifierItem::Handlers{
                .activated = [this](const QString &token) { m_told += u"activated "_s + token; },
                .chosen =
                    [this](int entry, const QString &token) {
                        m_told += u"%1 %2"_s.arg(entry).arg(token);
                    }});
        m_item->setContent({u"Title"_s, u"Text"_s, u"Head"_s, {{1, u"Show"_s}, {5, u"a_b"_s}}});
    }

    QDBusMessage call(const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments = {}) {
        auto message =
            QDBusMessage::createMethodCall(m_connection.baseService(), path, interface, method);
        message.setArguments(arguments);
        const auto pending = m_panel.asyncCall(message, 5000);
        EXPECT_TRUE(serveUntil([&] { return pending.isFinished(); }));
        return pending.reply();
    }
    QDBusMessage callMenu(const QString &method, const QVariantList &arguments) {
        return call(itemPath + u"/Menu"_s, menu, method, arguments);
    }
    QVariant property(const QString &property) {
        return call(itemPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {item, property})
            .arguments()
            .value(0)
            .value<QDBusVariant>()
            .variant();
    }

    bool isOnTheBus() {
        return call(itemPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {item, u"Title"_s})
                   .type() == QDBusMessage::ReplyMessage;
    }
    bool isRegistered() {
        return serveUntil([&] { return !m_watcher->items.isEmpty(); }) && isOnTheBus();
    }

    dbusmenu::Layout layout(int parent = 0, int depth = -1, const QStringList &names = {}) {
        const QDBusMessage reply = callMenu(u"GetLayout"_s, {parent, depth, names});
        EXPECT_EQ(reply.signature(), u"u(ia{sv}av)"_s) << qPrintable(reply.errorMessage());
        return qdbus_cast<dbusmenu::Layout>(reply.arguments().value(1));
    }
    QStringList labels() {
        QStringList all;
        for (const QDBusVariant &child : layout().children)
            all += qdbus_cast<dbusmenu::Layout>(child.variant()).properties[u"label"_s].toString();
        return all;
    }

    PrivateBus m_bus;
    QDBusConnection m_connection = m_bus.connect();
    QDBusConnection m_panel = m_bus.connect();
    std::unique_ptr<Watcher> m_watcher;
    std::unique_ptr<StatusNotifierItem> m_item;
    QStringList m_told;
};

TEST_F(AnItemInThePanel, IsRegisteredByItsPathWhereThereIsAWatcher) {
    startWatcher();
    makeItem();
    ASSERT_TRUE(isRegistered());
    EXPECT_EQ(m_watcher->items, QStringList{m_connection.baseService() + u' ' + itemPath});
}

TEST_F(AnItemInThePanel, IsNotOnTheBusWithoutAWatcher) {
    makeItem();
    EXPECT_FALSE(isOnTheBus());
}

TEST_F(AnItemInThePanel, ComesWithAWatcherThatComesLaterGoesWithItAndComesAgain) {
    makeItem();
    EXPECT_FALSE(isOnTheBus());
    for (int round = 0; round < 3; ++round) {
        startWatcher();
        EXPECT_TRUE(isRegistered());
        m_watcher.reset();
        EXPECT_TRUE(serveUntil([&] { return !isOnTheBus(); }));
        EXPECT_EQ(callMenu(u"AboutToShow"_s, {0}).type(), QDBusMessage::ErrorMessage);
    }
}

TEST_F(AnItemInThePanel, LeavesTheBusWithItsProgramsWish) {
    startWatcher();
    makeItem();
    ASSERT_TRUE(isRegistered());
    m_item.reset();
    EXPECT_FALSE(isOnTheBus());
}

TEST_F(AnItemInThePanel, HasItsNameItsIconAndItsTexts) {
    startWatcher();
    makeItem();
    ASSERT_TRUE(isRegistered());
    EXPECT_EQ(property(u"Category"_s), QVariant(u"ApplicationStatus"_s));
    EXPECT_EQ(property(u"Id"_s), QVariant(u"com.example"_s));
    EXPECT_EQ(property(u"Status"_s), QVariant(u"Active"_s));
    EXPECT_EQ(property(u"Title"_s), QVariant(u"Title"_s));
    EXPECT_EQ(property(u"IconName"_s), QVariant(u"an-icon"_s));
    EXPECT_EQ(property(u"ItemIsMenu"_s), QVariant(false));
    EXPECT_EQ(property(u"Menu"_s).value<QDBusObjectPath>().path(), itemPath + u"/Menu"_s);
    const QVariant toolTip = property(u"ToolTip"_s);
    EXPECT_EQ(toolTip.value<QDBusArgument>().currentSignature(), u"(sa(iiay)ss)"_s);
}

TEST_F(AnItemInThePanel, TellsANewTitleAndToolTipOnlyWhereTheyDiffer) {
    startWatcher();
    makeItem();
    ASSERT_TRUE(isRegistered());
    Panel panel(m_panel);
    auto content = m_item->content();
    m_item->setContent(content);
    content.title = u"Another"_s;
    m_item->setContent(content);
    content.toolTip = u"Another"_s;
    m_item->setContent(content);
    content.entries.pop_back();
    m_item->setContent(content);
    ASSERT_TRUE(serveUntil([&] { return panel.told.size() >= 3; }));
    EXPECT_EQ(panel.told, (QStringList{u"NewTitle"_s, u"NewToolTip"_s, u"LayoutUpdated"_s}));
    EXPECT_EQ(property(u"Title"_s), QVariant(u"Another"_s));
}

TEST_F(AnItemInThePanel, TellsNothingWithoutAWatcher) {
    makeItem();
    EXPECT_FALSE(isOnTheBus());
    Panel panel(m_panel);
    m_item->setContent({u"Another"_s, u"Another"_s, u"Head"_s, {}});
    EXPECT_FALSE(isOnTheBus()); // An answer, behind whatever was told.
    EXPECT_TRUE(panel.told.isEmpty());
}

TEST_F(AnItemInThePanel, HandsAClickOnWithThePanelsToken) {
    startWatcher();
    makeItem();
    ASSERT_TRUE(isRegistered());
    call(itemPath, item, u"ProvideXdgActivationToken"_s, {u"a token"_s});
    call(itemPath, item, u"Activate"_s, {10, 20});
    call(itemPath, item, u"SecondaryActivate"_s, {10, 20});
    call(itemPath, item, u"ContextMenu"_s, {10, 20});
    call(itemPath, item, u"Scroll"_s, {1, u"vertical"_s});
    EXPECT_EQ(m_told, (QStringList{u"activated a token"_s, u"activated "_s, u"activated "_s}));
}

TEST_F(AnItemInThePanel, HasAMenuOfPlainLabels) {
    startWatcher();
    makeItem();
    ASSERT_TRUE(isRegistered());
    EXPECT_EQ(labels(), (QStringList{u"Show"_s, u"a__b"_s}));
    EXPECT_EQ(layout().properties[u"children-display"_s], u"submenu"_s);
    EXPECT_TRUE(layout(0, 0).children.isEmpty());
    EXPECT_EQ(layout(5).properties[u"label"_s], u"a__b"_s);
    EXPECT_TRUE(layout(5, -1, {u"enabled"_s}).properties.isEmpty());
    EXPECT_EQ(callMenu(u"GetLayout"_s, {7, -1, QStringList()}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(callMenu(u"GetProperty"_s, {1, u"label"_s})
                  .arguments()
                  .value(0)
                  .value<QDBusVariant>()
                  .variant(),
              QVariant(u"Show"_s));
    EXPECT_EQ(callMenu(u"GetProperty"_s, {1, u"nothing"_s}).type(), QDBusMessage::ErrorMessage);
    const auto all = qdbus_cast<QList<dbusmenu::EntryProperties>>(
        callMenu(u"GetGroupProperties"_s, {QVariant::fromValue(QList<int>{1, 7}), QStringList()})
            .arguments()
            .value(0));
    ASSERT_EQ(all.size(), 1);
    EXPECT_EQ(all.constFirst().id, 1);
}

TEST_F(AnItemInThePanel, ShowsAChoiceOfYesOrNoAsOne) {
    startWatcher();
    makeItem();
    ASSERT_TRUE(isRegistered());
    for (const bool isChecked : {true, false}) {
        m_item->setContent({u"Title"_s, {}, {}, {{1, u"Show"_s}, {2, u"Choice"_s, isChecked}}});
        EXPECT_EQ(layout(2).properties[u"toggle-type"_s], u"checkmark"_s);
        EXPECT_EQ(layout(2).properties[u"toggle-state"_s], int(isChecked));
    }
    EXPECT_FALSE(layout(1).properties.contains(u"toggle-type"_s));
}

TEST_F(AnItemInThePanel, TellsTheEntryThatIsChosen) {
    startWatcher();
    makeItem();
    ASSERT_TRUE(isRegistered());
    const auto nothing = QVariant::fromValue(QDBusVariant(QString()));
    call(itemPath, item, u"ProvideXdgActivationToken"_s, {u"a token"_s});
    callMenu(u"Event"_s, {1, u"hovered"_s, nothing, 0U});
    callMenu(u"Event"_s, {1, u"clicked"_s, nothing, 0U});
    callMenu(u"Event"_s, {9, u"clicked"_s, nothing, 0U});
    const QDBusMessage reply =
        callMenu(u"EventGroup"_s, {QVariant::fromValue(QList<dbusmenu::Event>{
                                      {5, u"clicked"_s, QDBusVariant(QString()), 0},
                                      {9, u"clicked"_s, QDBusVariant(QString()), 0}})});
    EXPECT_EQ(qdbus_cast<QList<int>>(reply.arguments().value(0)), QList<int>{9});
    EXPECT_EQ(m_told, (QStringList{u"1 a token"_s, u"5 "_s}));
}

TEST_F(AnItemInThePanel, KeepsToItselfWithoutABus) {
    StatusNotifierItem without(
        noBus(), {u"com.example"_s, u"an-icon"_s},
        {.activated = [](const QString &) {}, .chosen = [](int, const QString &) {}});
    without.setContent({u"Title"_s, u"Text"_s, u"Head"_s, {{1, u"Show"_s}}});
    QCoreApplication::processEvents();
    EXPECT_EQ(without.content().title, u"Title"_s);
}

} // namespace
} // namespace tarne::test

#include "StatusNotifierItemTest.moc"
