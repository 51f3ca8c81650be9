#include "GoalOutcomesModel.h"

#include "TARNEStyle.h"

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

struct Look {
    QString icon;
    QColor color;
    QString text;
};

Look look(const std::optional<GoalStatus> &status) {
    if (!status)
        return {u"circle"_s, SystemColors::gray, u"Not Evaluated"_s};
    switch (*status) {
    case GoalStatus::completed:
        return {u"checkmark.circle.fill"_s, SystemColors::green, displayName(*status)};
    case GoalStatus::partiallyCompleted:
        return {u"minus.circle.fill"_s, SystemColors::orange, displayName(*status)};
    case GoalStatus::notCompleted:
        break;
    }
    return {u"xmark.circle.fill"_s, SystemColors::red, displayName(GoalStatus::notCompleted)};
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
        return look(goal.status).icon;
    case StatusColor:
        return look(goal.status).color;
    case StatusText:
        return look(goal.status).text;
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
