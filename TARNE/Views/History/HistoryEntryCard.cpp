#include "HistoryEntryCard.h"

#include "DateFormatter.h"
#include "FatalError.h"
#include "TARNEStyle.h"
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
    for (const HistoryFeedbackRow &row :
         {HistoryFeedbackRow{u"chart.bar.fill"_s, u"Overall Assessment"_s, entry.overallAssessment},
          HistoryFeedbackRow{u"magnifyingglass"_s, u"Patterns Observed"_s, entry.patternsObserved},
          HistoryFeedbackRow{u"lightbulb.fill"_s, u"Suggestions"_s, entry.suggestions},
          HistoryFeedbackRow{u"heart.fill"_s, u"Motivation"_s, entry.motivation}}) {
        if (!row.content.isEmpty())
            rows += QVariant::fromValue(row);
    }
    return rows;
}

/// The verdict on a session as a whole. A partially completed goal counts as not completed.
GoalStatus summaryOf(qsizetype completed, qsizetype all) {
    if (completed == all)
        return GoalStatus::completed;
    return completed > 0 ? GoalStatus::partiallyCompleted : GoalStatus::notCompleted;
}

} // namespace

HistoryEntryCard::HistoryEntryCard(const SessionHistoryEntry &entry, const Calendar &calendar)
    : time(formatTime(entry.sessionDate, calendar)),
      duration(formatDuration(entry.duration)),
      hasSummary(!entry.goals.empty()),
      goals(goalRows(entry.goals)),
      feedback(feedbackRows(entry)),
      reflection(entry.reflection.isEmpty() ? u"No reflection provided"_s : entry.reflection),
      hasReflection(!entry.reflection.isEmpty()) {
    const auto completed = static_cast<qsizetype>(
        std::count_if(entry.goals.begin(), entry.goals.end(), [](const SessionGoal &goal) {
            return goal.status == GoalStatus::completed;
        }));
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
    if (!status)
        return u"circle"_s;
    switch (*status) {
    case GoalStatus::completed:
        return u"checkmark.circle.fill"_s;
    case GoalStatus::partiallyCompleted:
        return u"minus.circle.fill"_s;
    case GoalStatus::notCompleted:
        return u"xmark.circle.fill"_s;
    }
    Q_UNREACHABLE();
}

QColor HistoryEntryCard::statusColor(std::optional<GoalStatus> status) {
    if (!status)
        return SystemColors::gray;
    switch (*status) {
    case GoalStatus::completed:
        return SystemColors::green;
    case GoalStatus::partiallyCompleted:
        return SystemColors::orange;
    case GoalStatus::notCompleted:
        return SystemColors::red;
    }
    Q_UNREACHABLE();
}

} // namespace tarne
