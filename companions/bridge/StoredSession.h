#pragma once

#include <optional>
#include <string>

namespace tarne {

/// The session keys of TARNE's store, of one moment; see docs/extension-bridge.md. Its numbers are
/// finite, and so are their sums.
struct StoredSession {
    bool isActive = false;
    std::string id;
    std::string goals;          ///< Valid UTF-8; of a very long text the beginning.
    double timeRemaining = 0.0; ///< In seconds.
    double duration = 0.0;      ///< In seconds.
    double lastUpdate = 0.0;    ///< In seconds since 1970; 0 before the first session.
};

/// Reads the store's file once, through a connection that lives as long as the reading. None where
/// there is no store, where it cannot be read, is of a newer version, or holds what no session is.
[[nodiscard]] std::optional<StoredSession> readStoredSession(const std::string &file);

} // namespace tarne
