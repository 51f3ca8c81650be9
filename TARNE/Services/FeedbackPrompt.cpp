#include "FeedbackPrompt.h"

#include "ParsedGoals.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

const QString introduction =
    u"You are an expert productivity coach trained in Ansel Varga's philosophy of Stillhour. "
    u"Your role is to analyze a user's Stillhour session and provide concise, structured "
    u"feedback. Input includes:\n\n"
    u"- Goals: "_s;

const QString instructions =
    u"\n\n"
    u"Output the feedback in the following exact structure:\n\n"
    u"### Session Feedback\n\n"
    u"**Overall Assessment:** [1–2 sentences that summarize performance with encouragement.]\n\n"
    u"**Patterns Observed:** [Point out trends like distraction, over-ambition, strong "
    u"execution, or consistent completion. Use the goal statuses + reflection to support this.]"
    u"\n\n"
    u"**Advice:** [Offer practical, stillhour-aligned suggestions: reduce distractions, scope "
    u"goals better, build consistency, or environment design.]\n\n"
    u"**Motivation:** [End with an encouraging reminder about Stillhour as a skill that "
    u"compounds with practice.]\n\n"
    u"Keep feedback concise, actionable, and in a calm, reflective tone — like Ansel Varga "
    u"writing directly to the user. Do not repeat the user's goals verbatim. Focus on insight, "
    u"not summary."_s;

} // namespace

QString formatGoalsForPrompt(const FocusSession &session) {
    const std::vector<SessionGoal> goals = parsedGoals(session);
    return goals.empty() ? session.goal : textsOf(goals).join(u", "_s);
}

QString formatGoalStatusesForPrompt(const FocusSession &session) {
    const std::vector<SessionGoal> goals = parsedGoals(session);
    if (goals.empty())
        return u"No specific goal statuses available"_s;
    QStringList pieces;
    for (const SessionGoal &goal : goals) {
        const QString status =
            goal.status ? displayName(*goal.status).toLower() : u"not evaluated"_s;
        pieces += goal.text + u" — "_s + status;
    }
    return pieces.join(u", "_s);
}

QString buildFeedbackPrompt(const FocusSession &session) {
    return introduction + formatGoalsForPrompt(session) + u"\n- Status: "_s +
           formatGoalStatusesForPrompt(session) + u"\n- Reflection: "_s +
           session.reflection.value_or(u"No reflection provided"_s) + instructions;
}

} // namespace tarne
