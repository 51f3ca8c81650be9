#pragma once

#include "SessionGoal.h"

#include <QAbstractListModel>
#include <QHash>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace tarne {

/// The goals of a session, each with the verdict that was chosen for it so far.
class GoalRatingsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS

public:
    enum Role {
        GoalText = Qt::UserRole + 1,
        /// The position of the chosen verdict among `allGoalStatuses`, or -1.
        SelectedStatus,
    };

    using QAbstractListModel::QAbstractListModel;

    /// Goals that are the same as before, by `id`, keep their rows.
    void show(std::vector<SessionGoal> goals, const QHash<QUuid, GoalStatus> &ratings);

    [[nodiscard]] const std::vector<SessionGoal> &goals() const { return m_goals; }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<SessionGoal> m_goals;
    QHash<QUuid, GoalStatus> m_ratings;
};

} // namespace tarne
