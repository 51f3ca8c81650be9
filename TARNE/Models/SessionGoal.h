#pragma once

#include "GoalStatus.h"
#include "RandomUuid.h"

#include <QStringList>
#include <QUuid>

#include <optional>
#include <vector>

namespace tarne {

/// One goal of a session. Identity is `id`; two goals are never compared as wholes.
/// Stored: a new member is optional, or no stored document reads any more.
struct SessionGoal {
    QUuid id = randomUuid();
    QString text;                                    ///< The goal's words, trimmed.
    std::optional<GoalStatus> status = std::nullopt; ///< None until the user has rated the goal.
};

/// The goals' words, in their order.
[[nodiscard]] QStringList textsOf(const std::vector<SessionGoal> &goals);

} // namespace tarne
