#pragma once

#include "Asio.h"
#include "FolderWatch.h"
#include "SessionWatch.h"

#include <cstddef>
#include <functional>
#include <string>

namespace tarne {

/// Reads TARNE's store when it was written, and asks whether TARNE still runs. On the thread of
/// its executor.
class StoreSignals {
public:
    /// `changed` is told each state of the session that differs from the one before; the first is
    /// Unavailable.
    StoreSignals(const asio::any_io_executor &executor, const std::string &folder,
                 std::function<void(const SessionState &state)> changed);

    void start();

    [[nodiscard]] const SessionState &state() const { return m_session.state(); }

private:
    void readSoon();
    void readAfter(std::size_t delay);
    void read();

    std::string m_storeFile;
    std::string m_lockFile;
    std::function<void(const SessionState &state)> m_changed;
    FolderWatch m_watch;
    asio::steady_timer m_settling;
    bool m_isReadingSoon = false;
    asio::steady_timer m_nextReading;
    SessionWatch m_session;
};

/// Whether a program has the lock on this file that TARNE has on its store for as long as it runs.
/// It is never taken here: TARNE would not start meanwhile.
[[nodiscard]] bool isLocked(const std::string &lockFile);

} // namespace tarne
