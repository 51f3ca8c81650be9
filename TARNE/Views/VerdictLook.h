#pragma once

#include "GoalStatus.h"

#include <QColor>
#include <QStringView>

#include <optional>

namespace tarne {

/// How the verdict on a goal, or the want of one, is drawn.
struct VerdictLook {
    QStringView symbol;
    QColor color;
};

[[nodiscard]] VerdictLook verdictLook(std::optional<GoalStatus> status);

} // namespace tarne
