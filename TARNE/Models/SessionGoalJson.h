#pragma once

#include "JsonCoder.h"
#include "SessionGoal.h"

/// The stored form of a goal and its verdict, for the codecs of the records that hold goals.
namespace tarne {

inline QString jsonText(GoalStatus status) {
    return rawValue(status);
}

inline bool fromJsonText(QUtf8StringView text, GoalStatus &status) {
    const std::optional<GoalStatus> known = goalStatusFromRawValue(text);
    status = known.value_or(status);
    return known.has_value();
}

template <>
struct json::JsonForm<SessionGoal> {
    static constexpr std::tuple members{member("id", &SessionGoal::id),
                                        member("text", &SessionGoal::text),
                                        member("status", &SessionGoal::status)};
    static SessionGoal blank() { return {.id = QUuid(), .text = {}}; }
};

} // namespace tarne
