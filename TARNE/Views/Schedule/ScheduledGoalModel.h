#pragma once

#include "Calendar.h"
#include "ScheduledGoal.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace tarne {

/// The goals of the day that the schedule shows, one row a goal, identified by the goals' ids: a
/// change of a goal keeps its row, goals that come or go side by side leave the others' rows alone.
class ScheduledGoalModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the schedule screen.")
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)

public:
    enum Role {
        Goal = Qt::UserRole + 1, ///< Plain text from outside.
        TimeText,
        IsCompleted,
    };

    explicit ScheduledGoalModel(Calendar calendar);

    /// `calendar` is that of the times' texts.
    void setGoals(std::vector<ScheduledGoal> goals, const Calendar &calendar);
    [[nodiscard]] const std::vector<ScheduledGoal> &goals() const { return m_goals; }
    [[nodiscard]] const ScheduledGoal &goalAt(int row) const;
    [[nodiscard]] int count() const { return static_cast<int>(m_goals.size()); }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    std::vector<ScheduledGoal> m_goals;
    Calendar m_calendar;
};

} // namespace tarne
