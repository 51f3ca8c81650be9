#include "GoalStatus.h"

using namespace Qt::StringLiterals;

namespace tarne {

QString rawValue(GoalStatus status) {
    switch (status) {
    case GoalStatus::completed:
        return u"completed"_s;
    case GoalStatus::partiallyCompleted:
        return u"partially_completed"_s;
    case GoalStatus::notCompleted:
        return u"not_completed"_s;
    }
    Q_UNREACHABLE();
}

std::optional<GoalStatus> goalStatusFromRawValue(QAnyStringView text) {
    for (const GoalStatus status : allGoalStatuses) {
        if (text == rawValue(status))
            return status;
    }
    return std::nullopt;
}

QString displayName(GoalStatus status) {
    switch (status) {
    case GoalStatus::completed:
        return u"Completed"_s;
    case GoalStatus::partiallyCompleted:
        return u"Partially Completed"_s;
    case GoalStatus::notCompleted:
        return u"Not Completed"_s;
    }
    Q_UNREACHABLE();
}

} // namespace tarne
