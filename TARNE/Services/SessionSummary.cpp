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

} // namespace

QString createSessionSummary(const std::vector<SessionGoal> &goals, const QString &reflection,
                             const std::optional<ParsedFeedback> &feedback) {
    QString summary = u"# Stillhour Session Summary\n\n## Goals\n"_s;
    for (const SessionGoal &goal : goals)
        summary += u"- "_s + statusMark(goal.status) + u' ' + goal.text + u'\n';
    if (!reflection.isEmpty())
        summary += u"\n## Reflection\n"_s + reflection + u'\n';
    if (feedback) {
        summary += u"\n## AI Feedback\n\n"_s;
        for (const CoachingSection &section : coachingSections) {
            if (const QString &text = (*feedback).*section.text; !text.isEmpty())
                summary += u"**%1:** "_s.arg(section.title) + text + u"\n\n"_s;
        }
    }
    return summary;
}

} // namespace tarne
