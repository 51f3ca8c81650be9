#include "SessionSummary.h"

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

QString statusMark(const std::optional<GoalStatus> &status) {
    if (status == GoalStatus::completed)
        return u"✅"_s;
    if (status == GoalStatus::partiallyCompleted)
        return u"🔶"_s;
    return u"❌"_s;
}

QString section(const QString &label, const QString &text) {
    return text.isEmpty() ? QString() : label + text + u"\n\n"_s;
}

} // namespace

QString createSessionSummary(const std::vector<SessionGoal> &goals, const QString &reflection,
                             const std::optional<ParsedFeedback> &feedback) {
    QString summary = u"# Stillhour Session Summary\n\n## Goals\n"_s;
    for (const SessionGoal &goal : goals)
        summary += u"- "_s + statusMark(goal.status) + u' ' + goal.text + u'\n';
    if (!reflection.isEmpty())
        summary += u"\n## Reflection\n"_s + reflection + u'\n';
    if (feedback) {
        summary += u"\n## AI Feedback\n\n"_s +
                   section(u"**Overall Assessment:** "_s, feedback->overallAssessment) +
                   section(u"**Patterns Observed:** "_s, feedback->patternsObserved) +
                   section(u"**Suggestions:** "_s, feedback->advice) +
                   section(u"**Motivation:** "_s, feedback->motivation);
    }
    return summary;
}

} // namespace tarne
