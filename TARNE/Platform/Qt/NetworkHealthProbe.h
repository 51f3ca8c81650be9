#pragma once

#include "HealthProbe.h"

#include <QObject>

#include <chrono>

namespace tarne {

/// Probes over Qt Network, with one GET and one connection a probe: a kept one would make the
/// search for strays find us on the server's port. Main thread only.
class NetworkHealthProbe final : public HealthProbe {
public:
    static constexpr std::chrono::seconds defaultIdleLimit{60};

    /// A server that says nothing for `idleLimit` has failed.
    explicit NetworkHealthProbe(std::chrono::milliseconds idleLimit = defaultIdleLimit);

    void get(const QString &address, std::function<void(Reply)> done) override;

private:
    std::chrono::milliseconds m_idleLimit;
    QObject m_exchanges; ///< Parent of all that is under way.
};

} // namespace tarne
