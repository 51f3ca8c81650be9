#include "HistoryEntryCard.h"

#include "DateFormatter.h"
#include "FatalError.h"
#include "ParsedFeedback.h"
#include "VerdictLook.h"
#include "WholeNumber.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

QVariantList goalRows(const std::vector<SessionGoal> &goals) {
    QVariantList rows;
    for (const SessionGoal &goal : goals) {
        rows += QVariant::fromValue(HistoryGoalRow{HistoryEntryCard::statusIcon(goal.status),
                                                   HistoryEntryCard::statusColor(goal.status),
                                                   goal.text});
    }
    return rows;
}

QVariantList feedbackRows(const SessionHistoryEntry &entry) {
    QVariantList rows;
    const ParsedFeedback feedback{.overallAssessment = entry.overallAssessment,
                                  .patternsObserved = entry.patternsObserved,
                                  .advice = entry.suggestions,
                                  .motivation = entry.motivation};
    for (const CoachingSection &section : coachingSections) {
        if (const QString &text = feedback.*section.text; !text.isEmpty())
            rows += QVariant::fromValue(
                HistoryFeedbackRow{section.symbol.toString(), section.title.toString(), text});
    }
    return rows;
}

QString nameOf(const QString &time, const std::vector<SessionGoal> &goals) {
    constexpr qsizetype enoughToTellApart = 100;
    return goals.empty() ? time : u"%1, %2"_s.arg(time, goals.front().text.left(enoughToTellApart));
}

/// The verdict on a session as a whole. A partially completed goal counts as not completed.
GoalStatus summaryOf(qsizetype completed, qsizetype all) {
    if (completed == all)
        return GoalStatus::completed;
    return completed > 0 ? GoalStatus::partiallyCompleted : GoalStatus::notCompleted;
}

} // namespace

HistoryEntryCard::HistoryEntryCard(const SessionHistoryEntry &entry, const Calendar &calendar)
    : name(nameOf(formatTime(entry.sessionDate, calendar), entry.goals)),
      time(formatTime(entry.sessionDate, calendar)),
      duration(formatDuration(entry.duration)),
      hasSummary(!entry.goals.empty()),
      goals(goalRows(entry.goals)),
      feedback(feedbackRows(entry)),
      reflection(entry.reflection.isEmpty() ? u"No reflection provided"_s : entry.reflection),
      hasReflection(!entry.reflection.isEmpty()) {
    const auto completed = static_cast<qsizetype>(std::ranges::count_if(
        entry.goals, [](const SessionGoal &goal) { return goal.status == GoalStatus::completed; }));
    const GoalStatus summary = summaryOf(completed, goals.size());
    summarySymbol = statusIcon(summary);
    summaryColor = statusColor(summary);
    summaryText = u"%1/%2"_s.arg(completed).arg(goals.size());
}

QString HistoryEntryCard::formatTime(Date date, const Calendar &calendar) {
    return DateFormatter(calendar).shortTime(date);
}

QString HistoryEntryCard::formatDuration(double seconds) {
    const std::optional<qint64> minutes = wholeNumber(seconds / 60.0);
    if (!minutes)
        fatalError("a session's duration in minutes is no integer");
    return u"%1 min"_s.arg(*minutes);
}

QString HistoryEntryCard::statusIcon(std::optional<GoalStatus> status) {
    return verdictLook(status).symbol.toString();
}

QColor HistoryEntryCard::statusColor(std::optional<GoalStatus> status) {
    return verdictLook(status).color;
}

} // namespace tarne
