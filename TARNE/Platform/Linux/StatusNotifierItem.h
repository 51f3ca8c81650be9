#pragma once

#include "DBusService.h"
#include "PanelMenu.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <functional>
#include <vector>

namespace tarne {

/// An item in the desktop's panel: an icon with a title, a tool tip and a menu, as
/// org.kde.StatusNotifierItem has it.
///
/// It is there while the desktop has a watcher for such items, whenever that comes and however
/// often. Without one it is not on the bus, and what is set costs no message. It is registered by
/// its path under our unique name: in a process namespace every program has the same process id, by
/// which names of items are made elsewhere. Main thread only.
class StatusNotifierItem final : public QObject {
    Q_OBJECT

public:
    struct Identity {
        QString id;       ///< The same for every run of the program.
        QString iconName; ///< In the icon theme.
    };

    struct Content {
        QString title;       ///< One line.
        QString toolTip;     ///< One line below the tool tip's own title.
        QString toolTipHead; ///< The tool tip's title.
        std::vector<PanelMenuEntry> entries;

        friend bool operator==(const Content &, const Content &) = default;
    };

    /// The token lets a window come to the front; it may be empty.
    struct Handlers {
        std::function<void(const QString &activationToken)> activated; ///< The icon was clicked.
        std::function<void(int entry, const QString &activationToken)> chosen;
    };

    StatusNotifierItem(const QDBusConnection &sessionBus, Identity identity, Handlers handlers);
    ~StatusNotifierItem() override;

    /// Panels are told what differs from before.
    void setContent(Content content);

    [[nodiscard]] const Identity &identity() const { return m_identity; }
    [[nodiscard]] const Content &content() const { return m_content; }

    // What a panel tells.

    void noteToken(const QString &token) { m_token = token; }
    void activate();

Q_SIGNALS:
    void titleChanged();
    void toolTipChanged();

private:
    void appear();
    void disappear();

    QDBusConnection m_bus;
    Identity m_identity;
    Handlers m_handlers;
    Content m_content;
    QString m_token; ///< For what the user is about to choose.
    PanelMenu m_menu;
    DBusService m_watcher;
    DBusService m_names;
    bool m_isThere = false;
};

} // namespace tarne
