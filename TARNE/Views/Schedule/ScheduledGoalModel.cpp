#include "ScheduledGoalModel.h"

#include "DateFormatter.h"
#include "ScheduleDay.h"

#include <algorithm>
#include <utility>

namespace tarne {

namespace {

using Goals = std::vector<ScheduledGoal>;

bool haveSameId(const ScheduledGoal &a, const ScheduledGoal &b) {
    return a.id == b.id;
}

/// How many goals both begin with.
int commonStart(const Goals &a, const Goals &b) {
    const auto end = std::mismatch(a.begin(), a.end(), b.begin(), b.end(), haveSameId).first;
    return static_cast<int>(end - a.begin());
}

/// How many goals both end with, beyond the first `start`.
int commonEnd(const Goals &a, const Goals &b, int start) {
    const auto end =
        std::mismatch(a.rbegin(), a.rend() - start, b.rbegin(), b.rend() - start, haveSameId).first;
    return static_cast<int>(end - a.rbegin());
}

} // namespace

ScheduledGoalModel::ScheduledGoalModel(Calendar calendar) : m_calendar(std::move(calendar)) {}

void ScheduledGoalModel::setGoals(Goals goals, const Calendar &calendar) {
    const int start = commonStart(m_goals, goals);
    const int end = commonEnd(m_goals, goals, start);
    const int formerEnd = count() - end - 1;
    const int newEnd = static_cast<int>(goals.size()) - end - 1;
    const bool hasRemoved = formerEnd >= start;
    const bool hasAdded = newEnd >= start;

    if (hasRemoved && hasAdded)
        beginResetModel();
    else if (hasRemoved)
        beginRemoveRows({}, start, formerEnd);
    else if (hasAdded)
        beginInsertRows({}, start, newEnd);
    const Goals former = std::exchange(m_goals, std::move(goals));
    const bool writesAnew = !areAlike(std::exchange(m_calendar, calendar), calendar);
    if (hasRemoved && hasAdded)
        endResetModel();
    else if (hasRemoved)
        endRemoveRows();
    else if (hasAdded)
        endInsertRows();

    for (int row = 0; row < count(); ++row) {
        const int formerRow = row < start ? row : row - newEnd + formerEnd;
        const bool isKept = row < start || row > newEnd;
        if (isKept && (writesAnew || goalAt(row) != former[static_cast<std::size_t>(formerRow)]))
            Q_EMIT dataChanged(index(row), index(row));
    }
    if (count() != static_cast<int>(former.size()))
        Q_EMIT countChanged();
}

const ScheduledGoal &ScheduledGoalModel::goalAt(int row) const {
    return m_goals[static_cast<std::size_t>(row)];
}

int ScheduledGoalModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant ScheduledGoalModel::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const ScheduledGoal &goal = goalAt(index.row());
    switch (role) {
    case Goal:
        return goal.goal;
    case TimeText:
        return DateFormatter(m_calendar).shortTime(goal.time);
    case IsCompleted:
        return goal.isCompleted;
    default:
        return {};
    }
}

QHash<int, QByteArray> ScheduledGoalModel::roleNames() const {
    return {{Goal, "goal"}, {TimeText, "timeText"}, {IsCompleted, "isCompleted"}};
}

} // namespace tarne
