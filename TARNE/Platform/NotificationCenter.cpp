#include "NotificationCenter.h"

#include <algorithm>

namespace tarne {

NotificationCenter::Registration NotificationCenter::addObserver(QLatin1StringView name,
                                                                 std::function<void()> handler) {
    std::erase_if(m_observers, [](const auto &observer) { return observer.expired(); });
    auto observer = std::make_shared<Observer>(Observer{name, std::move(handler)});
    m_observers.push_back(observer);
    return Registration(std::move(observer));
}

void NotificationCenter::post(QLatin1StringView name) {
    const auto observers = m_observers;
    for (const auto &candidate : observers) {
        if (const auto observer = candidate.lock(); observer && observer->name == name)
            observer->handler();
    }
}

} // namespace tarne
