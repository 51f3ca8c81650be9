#pragma once

#include "FocusSession.h"

#include <QString>

namespace tarne {

/// What the model is asked about a session. It names the labels of `coachingSections`, at which
/// `parseFeedbackText` cuts the answer.
[[nodiscard]] QString buildFeedbackPrompt(const FocusSession &session);

/// The goals' texts joined by ", ", or the raw line when there are none. Commas inside a goal are
/// not escaped.
[[nodiscard]] QString formatGoalsForPrompt(const FocusSession &session);

/// "text — status" for each goal, joined by ", ".
[[nodiscard]] QString formatGoalStatusesForPrompt(const FocusSession &session);

} // namespace tarne
