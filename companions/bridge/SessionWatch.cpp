#include "SessionWatch.h"

#include "GoalsText.h"

#include <algorithm>
#include <cmath>

namespace tarne {

namespace {

/// The end of one session, told by two runs of TARNE, in seconds.
constexpr double sameEnd = 5.0;
/// So far the end moves without being told again, in seconds.
constexpr double untoldMove = 2.0;

} // namespace

const SessionState &SessionWatch::take(const std::optional<StoredSession> &read, bool isRunning,
                                       Moment now) {
    if (!read) {
        m_state = {.kind = SessionState::Kind::Unavailable};
        m_inactiveSince.reset();
    } else if (!isRunning) {
        // The next run finds these values in the store before it has written its own.
        m_deadUpdate = read->lastUpdate;
        m_state = {.kind = SessionState::Kind::Inactive};
        m_inactiveSince.reset();
    } else {
        takeRunning(*read, now);
    }
    m_nextReading.reset();
    if (m_state.kind == SessionState::Kind::Active) {
        m_nextReading = now + beat;
        if (m_inactiveSince)
            m_nextReading = std::min(*m_nextReading, *m_inactiveSince + patienceWithInactive);
    }
    return m_state;
}

void SessionWatch::takeRunning(const StoredSession &read, Moment now) {
    if (read.lastUpdate != m_lastUpdate) {
        m_lastUpdate = read.lastUpdate;
        m_lastUpdateSeen = now;
    }
    const bool isSilent = now - m_lastUpdateSeen >= patienceWithSilence;
    if (read.isActive && !isSilent && read.lastUpdate != m_deadUpdate) {
        m_inactiveSince.reset();
        goOn(read);
        return;
    }
    const bool wasActive = m_state.kind == SessionState::Kind::Active;
    if (wasActive && !read.isActive && !m_inactiveSince)
        m_inactiveSince = now;
    const bool isOver =
        isSilent || read.isActive || now - m_inactiveSince.value_or(now) >= patienceWithInactive;
    if (!wasActive || isOver) {
        m_state = {.kind = SessionState::Kind::Inactive};
        m_inactiveSince.reset();
    }
}

void SessionWatch::goOn(const StoredSession &read) {
    const std::string goals = toldGoals(read.goals);
    const double ends = read.lastUpdate + read.timeRemaining;
    SessionState state{.kind = SessionState::Kind::Active,
                       .id = read.id,
                       .goals = goals,
                       .ends = ends,
                       .duration = read.duration};
    if (isSameSession(read, goals, ends)) {
        state.id = m_last.id;
        if (std::abs(ends - m_last.ends) <= untoldMove)
            state.ends = m_last.ends;
    }
    m_lastEnds = ends;
    m_lastStoredId = read.id;
    m_last = state;
    m_state = state;
}

bool SessionWatch::isSameSession(const StoredSession &read, const std::string &goals,
                                 double ends) const {
    if (m_last.kind != SessionState::Kind::Active)
        return false;
    return read.id == m_lastStoredId || read.id == m_last.id ||
           (goals == m_last.goals && std::abs(ends - m_lastEnds) <= sameEnd);
}

} // namespace tarne
