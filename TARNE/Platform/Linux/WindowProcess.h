#pragma once

#include "DBusService.h"

#include <QDBusConnection>
#include <QObject>

class QWindow;

namespace tarne {

/// Tells an X11 window manager which process a window belongs to (_NET_WM_PID).
///
/// In a process namespace a program knows itself by a number that outside is another program's: a
/// window manager that ends what hangs would end that one. The session bus, which lives outside,
/// knows the right number; until it has told it, and without a bus, the window names no process.
/// Elsewhere than under X11 nothing is done.
class WindowProcess final : public QObject {
    Q_OBJECT

public:
    /// To be made before the window's first appearance; the window outlives the object.
    WindowProcess(QWindow &window, const QDBusConnection &sessionBus);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void apply() const;

    QWindow &m_window;
    DBusService m_bus;
    quint32 m_process = 0; ///< 0 while it is not known.
};

} // namespace tarne
