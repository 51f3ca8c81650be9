#pragma once

namespace tarne {

/// Tries TCP ports of the loopback interface.
class PortProbe {
public:
    virtual ~PortProbe() = default;

    /// Whether a fresh socket, with no options set, can be bound to `port` on 127.0.0.1 at this
    /// moment. Nothing stays bound.
    [[nodiscard]] virtual bool canBind(int port) = 0;
};

} // namespace tarne
