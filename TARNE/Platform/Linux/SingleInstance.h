#pragma once

#include <QDBusConnection>
#include <QFile>
#include <QObject>

#include <functional>
#include <memory>

namespace tarne {

/// Sees to it that one process of a user's session runs the program.
///
/// Construction claims the place: the name com.tarne.app on the session bus, with the interface
/// org.freedesktop.Application under it, or without a bus a lock on a file in the runtime folder.
/// To be constructed before anything is opened, logged or swept. The bus daemon is waited for, for
/// 2 s at most; another process never is.
class SingleInstance final : public QObject {
    Q_OBJECT

public:
    /// Called in the first process when somebody starts the program again. The token lets a window
    /// come to the front under Wayland; it may be empty.
    using Activated = std::function<void(const QString &activationToken)>;

    SingleInstance(QDBusConnection sessionBus, Activated activated);
    ~SingleInstance() override;

    /// False when another process has the place already: call `activateFirst` and end.
    [[nodiscard]] bool isFirst() const { return m_isFirst; }

    /// Asks the first process to show its window, without waiting for it: it may be blocking in its
    /// start. Without a bus nothing can be asked.
    void activateFirst();

private:
    bool claimName();
    bool claimLock();

    QDBusConnection m_bus;
    Activated m_activated;
    bool m_usesBus = false;
    QFile m_lock;
    bool m_isFirst = false;
};

} // namespace tarne
