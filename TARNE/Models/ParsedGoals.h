#pragma once

#include "FocusSession.h"

#include <optional>
#include <vector>

namespace tarne {

/// The goals that the end of a session works with: the session's own, or, when it has none, those
/// that its line parses to; none without a session. Goals parsed here have a new `id` at every
/// call.
[[nodiscard]] std::vector<SessionGoal> parsedGoals(const std::optional<FocusSession> &session);

} // namespace tarne
