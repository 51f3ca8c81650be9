#pragma once

#include <QString>

#include <array>
#include <compare>
#include <optional>

namespace tarne {

/// The user's verdict on a goal.
enum class GoalStatus { completed, partiallyCompleted, notCompleted };

/// All verdicts, in the order in which they are offered.
inline constexpr std::array allGoalStatuses{GoalStatus::completed, GoalStatus::partiallyCompleted,
                                            GoalStatus::notCompleted};

/// The text that documents hold; fixed for ever. "completed", "partially_completed",
/// "not_completed".
[[nodiscard]] QString rawValue(GoalStatus status);

/// The status of a stored text, matched exactly and case-sensitively, or none.
[[nodiscard]] std::optional<GoalStatus> goalStatusFromRawValue(QStringView text);

/// The words for the user: "Completed", "Partially Completed", "Not Completed".
[[nodiscard]] QString displayName(GoalStatus status);

/// Orders verdicts from the worst to the best: notCompleted < partiallyCompleted < completed. (The
/// built-in comparison of enumerators would run the other way round.)
[[nodiscard]] std::strong_ordering operator<=>(GoalStatus a, GoalStatus b);

} // namespace tarne
