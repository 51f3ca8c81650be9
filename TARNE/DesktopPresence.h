#pragma once

#include "DesktopQuiet.h"
#include "RemoteControl.h"
#include "StatusNotifierItem.h"

#include <QDBusConnection>

namespace tarne {

class SessionInterface;
class UserDefaults;

/// Where the desktop meets a `RemoteControl`: the interface on the bus, the item in the panel, and
/// the quiet that a session may have. They follow it. A part of the composition root.
class DesktopPresence final : public QObject {
    Q_OBJECT

public:
    /// `applicationObject` is what stands on the bus under `path`; it, `defaults` and `control`
    /// outlive this object, and nobody calls the bus's objects after that.
    DesktopPresence(QObject &applicationObject, const QString &path,
                    const QDBusConnection &sessionBus, UserDefaults &defaults,
                    RemoteControl &control);

private:
    void showInPanel();

    RemoteControl &m_control;
    SessionInterface *m_session; ///< Belongs to the object on the bus.
    StatusNotifierItem m_item;
    DesktopQuiet m_quiet;
};

} // namespace tarne
