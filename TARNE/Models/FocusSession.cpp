#include "FocusSession.h"

using namespace Qt::StringLiterals;

namespace tarne {

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

} // namespace tarne
