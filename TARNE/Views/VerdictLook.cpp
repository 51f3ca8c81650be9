#include "VerdictLook.h"

#include "TARNEStyle.h"

namespace tarne {

VerdictLook verdictLook(std::optional<GoalStatus> status) {
    if (!status)
        return {u"circle", SystemColors::gray};
    switch (*status) {
    case GoalStatus::completed:
        return {u"checkmark.circle.fill", SystemColors::green};
    case GoalStatus::partiallyCompleted:
        return {u"minus.circle.fill", SystemColors::orange};
    case GoalStatus::notCompleted:
        return {u"xmark.circle.fill", SystemColors::red};
    }
    Q_UNREACHABLE();
}

} // namespace tarne
