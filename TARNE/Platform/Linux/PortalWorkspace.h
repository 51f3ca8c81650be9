#pragma once

#include "DBusService.h"
#include "Workspace.h"

#include <functional>

namespace tarne {

/// Opens pages through the desktop portal, so that a browser is started by the desktop and never
/// becomes our own child; a desktop without a portal is asked through `fallback`.
class PortalWorkspace final : public QObject, public Workspace {
    Q_OBJECT

public:
    /// Opens a page in some other way; false when nobody wants it.
    using Opener = std::function<bool(const QUrl &url)>;

    /// With our launcher as the fallback, and where there is none Qt's own way of opening a page.
    explicit PortalWorkspace(QDBusConnection sessionBus);
    PortalWorkspace(QDBusConnection sessionBus, Opener fallback);

    void open(const QUrl &url) override;

private:
    DBusService m_portal;
    Opener m_fallback;
};

} // namespace tarne
