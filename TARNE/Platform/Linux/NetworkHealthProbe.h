#pragma once

#include "HealthProbe.h"

#include <QNetworkAccessManager>

#include <chrono>
#include <optional>

namespace tarne {

/// Probes over Qt Network, with no proxy and one connection a probe: a kept one would make the
/// search for strays find us on the server's port. Main thread only.
class NetworkHealthProbe final : public HealthProbe {
public:
    /// A server that says nothing for `idleLimit` has failed.
    explicit NetworkHealthProbe(std::chrono::milliseconds idleLimit = std::chrono::seconds{60});

    void get(const QString &address, std::function<void(Reply)> done) override;

private:
    std::chrono::milliseconds m_idleLimit;
    std::optional<QNetworkAccessManager> m_network; ///< Made by the first probe.
};

} // namespace tarne
