#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace tarne {

/// Names of the events that travel over the default notification centre.
namespace notifications {
inline constexpr QLatin1StringView willSleep{"NSWorkspaceWillSleepNotification"};
inline constexpr QLatin1StringView didWake{"NSWorkspaceDidWakeNotification"};
inline constexpr QLatin1StringView willResignActive{"NSApplicationWillResignActiveNotification"};
inline constexpr QLatin1StringView didBecomeActive{"NSApplicationDidBecomeActiveNotification"};
inline constexpr QLatin1StringView sessionHistoryUpdated{"sessionHistoryUpdated"};
} // namespace notifications

/// Broadcasts named events, without object or payload, inside the process.
///
/// A post is synchronous: when it returns, every observer has run, in the order of registration.
/// Observers may be added and removed while a post is under way: an added one hears the next post,
/// a removed one is not called any more. Main thread only. The centre must outlive its observers'
/// registrations.
class NotificationCenter {
    struct Observer {
        QString name;
        std::function<void()> handler;
    };

public:
    /// Keeps an observer registered for as long as it lives.
    class Registration {
    public:
        Registration() = default;

    private:
        friend class NotificationCenter;
        explicit Registration(std::shared_ptr<Observer> observer)
            : m_observer(std::move(observer)) {}
        std::shared_ptr<Observer> m_observer;
    };

    [[nodiscard]] Registration addObserver(QLatin1StringView name, std::function<void()> handler);

    void post(QLatin1StringView name);

private:
    std::vector<std::weak_ptr<Observer>> m_observers;
};

} // namespace tarne
