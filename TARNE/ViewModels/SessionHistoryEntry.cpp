#include "SessionHistoryEntry.h"

#include "SessionGoalJson.h"

namespace tarne {

template <>
struct json::JsonForm<SessionHistoryEntry> {
    static constexpr std::tuple members{
        member("id", &SessionHistoryEntry::id),
        member("sessionDate", &SessionHistoryEntry::sessionDate),
        member("goals", &SessionHistoryEntry::goals),
        member("duration", &SessionHistoryEntry::duration),
        member("overallAssessment", &SessionHistoryEntry::overallAssessment),
        member("patternsObserved", &SessionHistoryEntry::patternsObserved),
        member("suggestions", &SessionHistoryEntry::suggestions),
        member("motivation", &SessionHistoryEntry::motivation),
        member("reflection", &SessionHistoryEntry::reflection)};
    static SessionHistoryEntry blank() {
        return {.id = QUuid(), .sessionDate = {}, .goals = {}, .duration = 0};
    }
};

namespace {

/// What a document takes for an entry, estimated from above: names and numbers, and the texts.
qsizetype expectedSize(const std::vector<SessionHistoryEntry> &history) {
    constexpr qsizetype namesAndNumbers = 256;
    constexpr qsizetype namesOfGoal = 96;
    qsizetype size = 2;
    for (const SessionHistoryEntry &entry : history) {
        size += namesAndNumbers + entry.overallAssessment.size() + entry.patternsObserved.size() +
                entry.suggestions.size() + entry.motivation.size() + entry.reflection.size();
        for (const SessionGoal &goal : entry.goals)
            size += namesOfGoal + goal.text.size();
    }
    return size;
}

} // namespace

std::optional<std::vector<SessionHistoryEntry>> decodeHistory(const QByteArray &document) {
    return json::decode<std::vector<SessionHistoryEntry>>(document);
}

std::optional<QByteArray> encodeHistory(const std::vector<SessionHistoryEntry> &history) {
    return json::encode(history, expectedSize(history));
}

} // namespace tarne
