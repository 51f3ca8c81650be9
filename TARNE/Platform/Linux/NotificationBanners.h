#pragma once

#include <QTimer>

#include <memory>

#include <gio/gio.h>

namespace tarne {

class UserDefaults;

/// The setting of GNOME that shows notifications as banners.
///
/// It outlives this process, so the store remembers what it was before it is changed: a run that
/// was killed is made good by the next one. Main thread only; `defaults` outlives the object.
class NotificationBanners {
public:
    /// None where the machine has no such setting, or does not let it be changed.
    [[nodiscard]] static std::unique_ptr<NotificationBanners> find(UserDefaults &defaults);
    /// Whether an earlier run has left the setting changed.
    [[nodiscard]] static bool isOwed(const UserDefaults &defaults);

    /// Waits until the desktop knows what was set.
    ~NotificationBanners();
    NotificationBanners(const NotificationBanners &) = delete;
    NotificationBanners &operator=(const NotificationBanners &) = delete;

    /// Turns banners off a moment later, unless the user has them off anyway.
    void hide();
    /// Puts the setting back, if it was changed.
    void giveBack();

private:
    NotificationBanners(GSettings *settings, UserDefaults &defaults);

    struct Unref {
        void operator()(GSettings *settings) const;
    };
    std::unique_ptr<GSettings, Unref> m_settings;
    UserDefaults &m_defaults;
    QTimer m_hideSoon;
};

} // namespace tarne
