#pragma once

#include "DBusService.h"
#include "DesktopWishes.h"

#include <functional>
#include <optional>
#include <vector>

namespace tarne {

/// The share of a text scale that is left to us where everything is drawn larger by `drawnScale`.
///
/// X11 desktops put their text scale into the resolution of fonts ("Xft/DPI" of the settings'
/// daemon, "Xft.dpi" of the resources), often multiplied by the whole number by which windows are
/// larger. Qt draws the whole window larger by that resolution, texts included. So a scale that is
/// found in it is done already, and without a portal nothing is left to do.
[[nodiscard]] double textScaleLeft(double textScale, double drawnScale);

/// Follows what the user asks the desktop for, as the desktop portal tells of it, in GNOME's, in
/// KDE's and in the common settings. Nobody waits for the portal: until it answers, and where there
/// is none, nothing is asked for. Main thread only.
class PortalWishes final : public QObject {
    Q_OBJECT

public:
    using Changed = std::function<void(const DesktopWishes &wishes)>;
    /// How much larger than a point a pixel of the desktop is by its fonts' resolution.
    using DrawnScale = std::function<double()>;

    /// `changed` is called from the event loop, and only where the wishes are other than before.
    PortalWishes(QDBusConnection sessionBus, Changed changed);
    PortalWishes(QDBusConnection sessionBus, DrawnScale drawnScale, Changed changed);

private Q_SLOTS:
    /// Takes the whole message: a slot with a variant is refused as long as nothing in the process
    /// has made the bus's own types known to Qt.
    void handleChange(const QDBusMessage &signal);

private:
    /// What the desktops' settings hold. Each desktop has its own, so the wishes are their sum.
    struct Settings {
        bool reducedMotion = false; ///< The common one.
        bool noAnimations = false;  ///< GNOME's.
        bool noDuration = false;    ///< KDE's.
        bool contrastMore = false;  ///< The common one.
        bool highContrast = false;  ///< GNOME's.
        double textScale = 1.0;     ///< GNOME's.
    };

    struct Change {
        QString group;
        QString key;
        QVariant value;
    };

    void ask();
    void note(const Change &change);
    void tell();

    DBusService m_portal;
    DrawnScale m_drawnScale;
    Changed m_changed;
    Settings m_settings;
    DesktopWishes m_wishes;
    quint64 m_asked = 0; ///< Counts questions, since only the last one's answer is taken.
    /// What is told until that answer is read. It may be newer than the answer, and comes after it.
    std::optional<std::vector<Change>> m_changedMeanwhile;
};

} // namespace tarne
