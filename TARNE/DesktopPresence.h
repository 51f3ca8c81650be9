#pragma once

#include "RemoteControl.h"
#include "StatusNotifierItem.h"

#include <QDBusConnection>

namespace tarne {

class SessionInterface;

/// Where the desktop meets a `RemoteControl`: the interface on the bus and the item in the panel,
/// which follow it. A part of the composition root.
class DesktopPresence final : public QObject {
    Q_OBJECT

public:
    /// `applicationObject` is what stands on the bus under `path`; it and `control` outlive this
    /// object, and nobody calls the bus's objects after that.
    DesktopPresence(QObject &applicationObject, const QString &path,
                    const QDBusConnection &sessionBus, RemoteControl &control);

private:
    void showInPanel();

    RemoteControl &m_control;
    SessionInterface *m_session; ///< Belongs to the object on the bus.
    StatusNotifierItem m_item;
};

} // namespace tarne
