#pragma once

#include "ProgramLock.h"

#include <QDBusConnection>
#include <QObject>

#include <functional>

namespace tarne {

/// Sees to it that one process of a user's session runs the program, and that one alone has the
/// store.
///
/// Construction claims both: the name com.tarne.app on the session bus, with the interface
/// org.freedesktop.Application under it, and the lock of the store, since two programs may live on
/// two buses or on none. To be constructed before anything else is opened, logged or swept. The bus
/// daemon is waited for, for 2 s at most; where it answers later, the lock decides, and the first
/// has the name then. A program that is about to end is waited for too, for 30 s; any other process
/// never is. To be destroyed after the store is closed.
class SingleInstance final : public QObject {
    Q_OBJECT

public:
    /// Where a program is to be one of a kind.
    struct Place {
        QDBusConnection sessionBus;
        QString busAddress; ///< Of that bus; empty when it is not known.
        ProgramLock &lock;  ///< Of the store; outlives the object.
    };

    /// Called in the first process when somebody starts the program again, with an empty action, or
    /// asks it for one of its actions. The token lets a window come to the front under Wayland; it
    /// may be empty.
    using Activated = std::function<void(const QString &action, const QString &activationToken)>;

    /// Of the object on the bus that this one is.
    static constexpr QLatin1StringView path{"/com/tarne/app"};

    SingleInstance(Place place, Activated activated);
    ~SingleInstance() override;

    /// The address at which this process finds its session bus; empty when it is not known.
    [[nodiscard]] static QString sessionBusAddress();

    /// False when another process has the place already: call `activateFirst` and end.
    [[nodiscard]] bool isFirst() const { return m_isFirst; }

    /// Asks the first process to show its window, on our bus or on its own, without waiting for it:
    /// it may be blocking in its start. One that has no bus cannot be asked.
    void activateFirst();

    /// For the first process, when it answers no more: from now on a start waits for its end and
    /// then takes its place, instead of asking in vain for a window.
    void beginEnding();

private:
    enum class Name {
        Ours, ///< Or as soon as the bus answers.
        Anothers,
        NoBus,
    };

    [[nodiscard]] Name claimName();
    void releaseName();
    [[nodiscard]] bool claimStore();

    Place m_place;
    Activated m_activated;
    Name m_name;
    bool m_isFirst;
};

} // namespace tarne
