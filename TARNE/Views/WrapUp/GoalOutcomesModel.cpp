#include "GoalOutcomesModel.h"

#include "VerdictLook.h"

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

QString wordsFor(const std::optional<GoalStatus> &status) {
    return status ? displayName(*status) : u"Not Evaluated"_s;
}

} // namespace

void GoalOutcomesModel::show(std::vector<SessionGoal> goals) {
    beginResetModel();
    m_goals = std::move(goals);
    endResetModel();
}

int GoalOutcomesModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_goals.size());
}

QVariant GoalOutcomesModel::data(const QModelIndex &index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const SessionGoal &goal = m_goals[static_cast<std::size_t>(index.row())];
    switch (role) {
    case GoalText:
        return goal.text;
    case StatusIcon:
        return verdictLook(goal.status).symbol.toString();
    case StatusColor:
        return verdictLook(goal.status).color;
    case StatusText:
        return wordsFor(goal.status);
    default:
        return {};
    }
}

QHash<int, QByteArray> GoalOutcomesModel::roleNames() const {
    return {{GoalText, "goalText"},
            {StatusIcon, "statusIcon"},
            {StatusColor, "statusColor"},
            {StatusText, "statusText"}};
}

} // namespace tarne
