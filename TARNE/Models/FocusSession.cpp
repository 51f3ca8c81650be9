#include "FocusSession.h"

#include "SessionGoalJson.h"

using namespace Qt::StringLiterals;

namespace tarne {

template <>
struct json::JsonForm<FocusSession> {
    static constexpr std::tuple members{member("id", &FocusSession::id),
                                        member("goal", &FocusSession::goal),
                                        member("goals", &FocusSession::goals),
                                        member("duration", &FocusSession::duration),
                                        member("startTime", &FocusSession::startTime),
                                        member("endTime", &FocusSession::endTime),
                                        member("reflection", &FocusSession::reflection),
                                        member("blockedApps", &FocusSession::blockedApps),
                                        member("blockedWebsites", &FocusSession::blockedWebsites),
                                        member("completed", &FocusSession::completed)};
    static FocusSession blank() { return {.id = QUuid(), .startTime = {}}; }
};

QString FocusSession::goalsDisplayString() const {
    if (goals.empty())
        return goal;
    QStringList texts;
    for (const SessionGoal &sessionGoal : goals)
        texts += sessionGoal.text;
    return texts.join(u", "_s);
}

std::vector<SessionGoal> FocusSession::parseGoals(const QString &from) {
    std::vector<SessionGoal> goals;
    for (const QStringView piece : QStringView(from).split(u',', Qt::SkipEmptyParts)) {
        if (const QStringView text = piece.trimmed(); !text.isEmpty())
            goals.push_back({.text = text.toString()});
    }
    return goals;
}

std::optional<FocusSession> decodeFocusSession(const QByteArray &document) {
    return json::decode<FocusSession>(document);
}

std::optional<QByteArray> encodeFocusSession(const FocusSession &session) {
    return json::encode(session);
}

} // namespace tarne
