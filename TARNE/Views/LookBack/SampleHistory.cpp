#include "SampleHistory.h"

#include "SessionViewModel.h"

using namespace Qt::StringLiterals;

namespace tarne::samples {

namespace {

Date daysBefore(const Calendar &calendar, Date now, int days) {
    return calendar.dateByAdding(Calendar::Unit::day, -days, now).value_or(now);
}

SessionHistoryEntry insightsSample(Date date, const QString &goal, GoalStatus status) {
    return {.sessionDate = date,
            .goals = {{.text = goal, .status = status}},
            .duration = 1500.0,
            .overallAssessment = u"Good focus session"_s,
            .patternsObserved = u"Consistent work patterns"_s,
            .suggestions = u"Keep up the good work"_s,
            .motivation = u"Building strong habits"_s,
            .reflection = u"Productive session"_s};
}

} // namespace

std::vector<SessionHistoryEntry> ofInsights(const Calendar &calendar, Date now) {
    using enum GoalStatus;
    const auto sample = [&](int days, const QString &goal, GoalStatus status) {
        return insightsSample(daysBefore(calendar, now, days), goal, status);
    };
    return {sample(1, u"Complete project proposal"_s, completed),
            sample(3, u"Research market trends"_s, completed),
            sample(7, u"Code review"_s, partiallyCompleted),
            sample(10, u"Write documentation"_s, completed),
            sample(14, u"Team meeting prep"_s, completed),
            sample(21, u"Design mockups"_s, partiallyCompleted)};
}

std::vector<SessionHistoryEntry> ofHistory(const Calendar &calendar, Date now) {
    using enum GoalStatus;
    return {
        {.sessionDate = now,
         .goals = {{.text = u"Complete project proposal"_s, .status = completed},
                   {.text = u"Review client feedback"_s, .status = partiallyCompleted}},
         .duration = 1500.0,
         .overallAssessment =
             u"Strong focus session with good task completion rate. You maintained "
             "concentration well throughout most of the session."_s,
         .patternsObserved = u"You tend to work more efficiently in the first half of sessions. "
                             "Consider breaking larger tasks into smaller chunks."_s,
         .suggestions = u"Try the Pomodoro technique with shorter 15-minute intervals for complex "
                        "tasks. Take brief breaks to maintain peak performance."_s,
         .motivation = u"Your consistency in completing sessions is building valuable stillhour "
                       "skills. Each session strengthens your ability to focus."_s,
         .reflection =
             u"Felt really productive today. The morning session worked well for creative work."_s},
        {.sessionDate = daysBefore(calendar, now, 1),
         .goals = {{.text = u"Research market trends"_s, .status = completed},
                   {.text = u"Draft presentation outline"_s, .status = completed},
                   {.text = u"Update project timeline"_s, .status = notCompleted}},
         .duration = 2700.0,
         .overallAssessment =
             u"Excellent session with high completion rate. You demonstrated strong "
             "focus and task prioritization."_s,
         .patternsObserved = u"You work exceptionally well on research and analytical tasks. "
                             "Administrative tasks seem to be less engaging."_s,
         .suggestions = u"Consider batching administrative tasks together in dedicated sessions. "
                        "Use your peak energy for creative and analytical work."_s,
         .motivation = u"Your ability to maintain focus for extended periods is impressive. This "
                       "skill will compound over time."_s,
         .reflection =
             u"Long session but very rewarding. Need to tackle admin tasks earlier in the "
             "day."_s},
        {.sessionDate = daysBefore(calendar, now, 2),
         .goals = {{.text = u"Code review for new feature"_s, .status = partiallyCompleted}},
         .duration = 1800.0,
         .overallAssessment =
             u"Good effort despite some distractions. You made meaningful progress "
             "on a complex task."_s,
         .patternsObserved = u"Technical tasks require more sustained attention. You benefit from "
                             "eliminating all potential interruptions."_s,
         .suggestions = u"For coding sessions, try using website blockers and turning off "
                        "notifications completely. Consider noise-canceling headphones."_s,
         .motivation = u"Even partially completed stillhour sessions are valuable. You're building "
                       "the habit of sustained focus."_s,
         .reflection = u"Had some interruptions but still made good progress. Need better "
                       "environment setup."_s}};
}

void save(const std::vector<SessionHistoryEntry> &entries, SessionViewModel &sessionViewModel) {
    for (const SessionHistoryEntry &entry : entries) {
        const FocusSession session{.goal = textsOf(entry.goals).join(u", "_s),
                                   .goals = entry.goals,
                                   .duration = entry.duration,
                                   .startTime = entry.sessionDate - entry.duration,
                                   .endTime = entry.sessionDate};
        sessionViewModel.saveSessionToHistory(session, entry.overallAssessment,
                                              entry.patternsObserved, entry.suggestions,
                                              entry.motivation, entry.reflection);
    }
}

} // namespace tarne::samples
