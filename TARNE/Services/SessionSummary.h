#pragma once

#include "ParsedFeedback.h"
#include "SessionGoal.h"

#include <QString>

#include <optional>
#include <vector>

namespace tarne {

/// A session in Markdown, for the clipboard: its goals with their verdicts and, where there is one,
/// the reflection and the coaching. A goal without a verdict counts as missed.
[[nodiscard]] QString createSessionSummary(const std::vector<SessionGoal> &goals,
                                           const QString &reflection,
                                           const std::optional<ParsedFeedback> &feedback);

} // namespace tarne
