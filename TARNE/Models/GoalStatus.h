#pragma once

#include <QString>

#include <array>
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
[[nodiscard]] std::optional<GoalStatus> goalStatusFromRawValue(QAnyStringView text);

/// The words for the user: "Completed", "Partially Completed", "Not Completed".
[[nodiscard]] QString displayName(GoalStatus status);

// Verdicts are ordered from the worst to the best: notCompleted < partiallyCompleted < completed.
// All four are needed: the built-in comparisons of enumerators, which run the other way round,
// would win over anything derived from operator<=>.
[[nodiscard]] constexpr bool operator<(GoalStatus a, GoalStatus b) {
    // The enumerators stand in the order of `allGoalStatuses`, which is the reverse.
    return static_cast<int>(a) > static_cast<int>(b);
}
[[nodiscard]] constexpr bool operator>(GoalStatus a, GoalStatus b) {
    return b < a;
}
[[nodiscard]] constexpr bool operator<=(GoalStatus a, GoalStatus b) {
    return !(b < a);
}
[[nodiscard]] constexpr bool operator>=(GoalStatus a, GoalStatus b) {
    return !(a < b);
}

} // namespace tarne
