#pragma once

#include "SessionGoal.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace tarne {

/// How the goals of a session went, as rows to be read.
class GoalOutcomesModel : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS

public:
    enum Role {
        GoalText = Qt::UserRole + 1,
        StatusIcon,  ///< The name of a symbol.
        StatusColor, ///< For the symbol and the words.
        StatusText,  ///< The verdict in words; "Not Evaluated" without one.
    };

    using QAbstractListModel::QAbstractListModel;

    void show(std::vector<SessionGoal> goals);

    [[nodiscard]] const std::vector<SessionGoal> &goals() const { return m_goals; }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<SessionGoal> m_goals;
};

} // namespace tarne
