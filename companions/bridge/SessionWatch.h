#pragma once

#include "StoredSession.h"

#include <chrono>
#include <optional>
#include <string>

namespace tarne {

/// What the extension is told of the session.
struct SessionState {
    enum class Kind {
        Active,
        Inactive,
        Unavailable, ///< There is no store, or none that can be read.
    };

    Kind kind = Kind::Unavailable;
    // Of an active session alone.
    std::string id{};      ///< The one under which the session was first seen.
    std::string goals{};   ///< As toldGoals makes them.
    double ends = 0.0;     ///< In seconds since 1970.
    double duration = 0.0; ///< In seconds.

    friend bool operator==(const SessionState &, const SessionState &) = default;
};

/// Makes one session out of what is read from the store. Knows no clock and no file.
///
/// Two writers may alternate in the store, of which one knows of no session: the session has ended
/// when it was inactive for more than a second on end, when TARNE does not run any more, or when
/// its last sign of life is old. A session goes on under its first id when TARNE is started anew.
class SessionWatch {
public:
    using Moment = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::milliseconds patienceWithInactive{1250};
    static constexpr std::chrono::seconds patienceWithSilence{15};
    static constexpr std::chrono::seconds beat{1};

    /// Takes what was read now; `isRunning` tells whether TARNE has the store's lock.
    const SessionState &take(const std::optional<StoredSession> &read, bool isRunning, Moment now);

    [[nodiscard]] const SessionState &state() const { return m_state; }

    /// When to read again though nothing has been written; none without a session.
    [[nodiscard]] std::optional<Moment> nextReading() const { return m_nextReading; }

private:
    void takeRunning(const StoredSession &read, Moment now);
    void goOn(const StoredSession &read);
    [[nodiscard]] bool isSameSession(const StoredSession &read, const std::string &goals,
                                     double ends) const;

    SessionState m_state;
    SessionState m_last; ///< The session that was last active.
    double m_lastEnds = 0.0;
    std::string m_lastStoredId;

    double m_lastUpdate = 0.0;
    Moment m_lastUpdateSeen{};
    std::optional<double> m_deadUpdate; ///< What a TARNE that has ended has left behind.
    std::optional<Moment> m_inactiveSince;
    std::optional<Moment> m_nextReading;
};

} // namespace tarne
