#include "GoalRatingsModel.h"

#include <algorithm>

namespace tarne {

void GoalRatingsModel::show(std::vector<SessionGoal> goals,
                            const QHash<QUuid, GoalStatus> &ratings) {
    const bool sameRows =
        std::ranges::equal(m_goals, goals, {}, &SessionGoal::id, &SessionGoal::id);
    if (!sameRows)
        beginResetModel();
    m_goals = std::move(goals);
    m_ratings = ratings;
    if (!sameRows)
        endResetModel();
    else if (!m_goals.empty())
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

int GoalRatingsModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_goals.size());
}

QVariant GoalRatingsModel::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const SessionGoal &goal = m_goals[static_cast<std::size_t>(index.row())];
    if (role == GoalText)
        return goal.text;
    if (role == SelectedStatus) {
        const auto rating = m_ratings.constFind(goal.id);
        return rating == m_ratings.cend() ? -1 : static_cast<int>(*rating);
    }
    return {};
}

QHash<int, QByteArray> GoalRatingsModel::roleNames() const {
    return {{GoalText, "goalText"}, {SelectedStatus, "selectedStatus"}};
}

} // namespace tarne
