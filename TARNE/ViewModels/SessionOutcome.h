#pragma once

#include "Date.h"
#include "GoalStatus.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace tarne {

struct SessionHistoryEntry;

/// The user's verdict on one goal of a finished session.
struct GoalOutcome {
    std::optional<GoalStatus> status; ///< None where the user gave no verdict.

    friend bool operator==(const GoalOutcome &, const GoalOutcome &) = default;
};

/// What figures over the history need of one entry: nothing of its texts.
struct SessionOutcome {
    Date sessionDate;
    std::vector<GoalOutcome> goals;

    friend bool operator==(const SessionOutcome &, const SessionOutcome &) = default;
};

[[nodiscard]] std::vector<SessionOutcome>
outcomesOf(const std::vector<SessionHistoryEntry> &history);

/// The outcomes of a stored history, or none when the document is unreadable: exactly what
/// `outcomesOf` makes of the entries that `decodeHistory` reads, in less than half of the time.
[[nodiscard]] std::optional<std::vector<SessionOutcome>> decodeOutcomes(const QByteArray &document);

} // namespace tarne
