#pragma once

#include "AcceptLoop.h"
#include "Asio.h"

#include <cstdint>
#include <deque>
#include <memory>

namespace tarne {

class HealthConnection;

/// What the server is on TCP: on the loopback addresses it answers GET /health with 200 and an
/// empty body, anything else with 404, and closes. Any web page can reach a port of this machine,
/// so nothing else is ever said there.
class HealthListener {
public:
    explicit HealthListener(asio::io_context &context);

    /// Binds 127.0.0.1, and ::1 where the machine has it; false where the former cannot be had.
    [[nodiscard]] bool listen(std::uint16_t port);

    /// The port that was bound.
    [[nodiscard]] std::uint16_t port();

private:
    using Loop = AcceptLoop<asio::ip::tcp>;

    void serve(asio::ip::tcp::socket socket);

    std::deque<std::weak_ptr<HealthConnection>> m_connections; ///< The oldest first.
    Loop m_version4;
    Loop m_version6;
};

} // namespace tarne
