#include "SessionOutcome.h"

#include "SessionGoalJson.h"
#include "SessionHistoryEntry.h"

namespace tarne {

template <>
struct json::JsonForm<GoalOutcome> {
    static constexpr std::tuple members{passed<QUuid>("id"), passed<QString>("text"),
                                        member("status", &GoalOutcome::status)};
    static GoalOutcome blank() { return {}; }
};

template <>
struct json::JsonForm<SessionOutcome> {
    static constexpr std::tuple members{passed<QUuid>("id"),
                                        member("sessionDate", &SessionOutcome::sessionDate),
                                        member("goals", &SessionOutcome::goals),
                                        passed<double>("duration"),
                                        passed<QString>("overallAssessment"),
                                        passed<QString>("patternsObserved"),
                                        passed<QString>("suggestions"),
                                        passed<QString>("motivation"),
                                        passed<QString>("reflection")};
    static SessionOutcome blank() { return {}; }
};

std::vector<SessionOutcome> outcomesOf(const std::vector<SessionHistoryEntry> &history) {
    std::vector<SessionOutcome> outcomes;
    outcomes.reserve(history.size());
    for (const SessionHistoryEntry &entry : history) {
        SessionOutcome &outcome = outcomes.emplace_back(SessionOutcome{entry.sessionDate, {}});
        for (const SessionGoal &goal : entry.goals)
            outcome.goals.push_back({goal.status});
    }
    return outcomes;
}

std::optional<std::vector<SessionOutcome>> decodeOutcomes(const QByteArray &document) {
    return json::decode<std::vector<SessionOutcome>>(document);
}

} // namespace tarne
