#pragma once

#include "DBusService.h"

#include <QDBusConnection>
#include <QObject>

#include <memory>
#include <optional>

namespace tarne {

class NotificationBanners;
class UserDefaults;

/// Keeps other programs' notifications from the user, where the desktop can do so: by the
/// inhibition of its notification daemon, which ends with this process, or by GNOME's setting of
/// banners, which a later run gives back where this one is killed. Main thread only; `defaults`
/// outlives the object.
class DesktopQuiet final : public QObject {
    Q_OBJECT

public:
    DesktopQuiet(const QDBusConnection &sessionBus, UserDefaults &defaults);
    /// Gives back what was taken.
    ~DesktopQuiet() override;

    /// Whether the desktop's daemon of now has a way. At first it is not known to have one.
    [[nodiscard]] bool isPossible() const { return m_way != Way::None; }

    void setQuiet(bool quiet);

Q_SIGNALS:
    void possibleChanged(bool possible);

private:
    enum class Way { None, Inhibition, Banners };

    void askDaemon();
    void askWhoItIs(quint64 owner);
    void setWay(Way way);
    void forgetDaemon();
    void apply();
    void inhibit();

    UserDefaults &m_defaults;
    DBusService m_daemon;
    DBusService m_names;
    std::unique_ptr<NotificationBanners> m_banners; ///< Once they are the way, or are owed.
    Way m_way = Way::None;
    bool m_isWanted = false;
    bool m_isAsking = false;         ///< For an inhibition.
    std::optional<quint32> m_cookie; ///< Of the inhibition that holds.
    quint64 m_owner = 0;             ///< Counts daemons, to drop what an earlier one answers.
};

} // namespace tarne
