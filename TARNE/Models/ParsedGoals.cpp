#include "ParsedGoals.h"

namespace tarne {

std::vector<SessionGoal> parsedGoals(const std::optional<FocusSession> &session) {
    if (!session)
        return {};
    return session->goals.empty() ? FocusSession::parseGoals(session->goal) : session->goals;
}

} // namespace tarne
