#pragma once

#include "ClockTimeFields.h"
#include "MonthCalendar.h"
#include "ScheduleViewModel.h"

#include <QBindable>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace tarne {

/// The sheet in which a goal of the schedule is entered. It holds nothing but its focus: day, time
/// and text are the controller's, so what was entered is there again when the sheet is reopened.
class AddGoalSheet final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the schedule screen.")
    Q_PROPERTY(QString goalText READ goalText WRITE setGoalText NOTIFY goalTextChanged FINAL)
    Q_PROPERTY(bool canAddGoal READ canAddGoal NOTIFY goalTextChanged FINAL)
    Q_PROPERTY(bool isGoalTextFocused READ isGoalTextFocused WRITE setGoalTextFocused NOTIFY
                   isGoalTextFocusedChanged FINAL)
    /// From today on.
    Q_PROPERTY(tarne::MonthCalendar *calendar READ calendar CONSTANT FINAL)
    Q_PROPERTY(tarne::ClockTimeFields *timeFields READ timeFields CONSTANT FINAL)

public:
    /// Everything passed outlives the sheet.
    AddGoalSheet(ScheduleViewModel &scheduleViewModel, QBindable<bool> isPresented);

    [[nodiscard]] QString goalText() const { return m_scheduleViewModel.goalText(); }
    void setGoalText(const QString &text) { m_scheduleViewModel.setGoalText(text); }
    [[nodiscard]] bool canAddGoal() const { return m_scheduleViewModel.canAddGoal(); }
    [[nodiscard]] bool isGoalTextFocused() const { return m_isGoalTextFocused; }
    void setGoalTextFocused(bool isFocused);
    [[nodiscard]] MonthCalendar *calendar() { return &m_calendar; }
    [[nodiscard]] ClockTimeFields *timeFields() { return &m_timeFields; }

    /// The sheet has come up: the goal's field has the focus.
    Q_INVOKABLE void appear();
    /// The "Schedule Goal" button: adds the goal and closes, or does nothing.
    Q_INVOKABLE void scheduleGoal();
    /// "Cancel" and the close button.
    Q_INVOKABLE void cancel();

Q_SIGNALS:
    void goalTextChanged();
    void isGoalTextFocusedChanged();

private:
    void showSelection();
    void selectTime(QTime time);

    ScheduleViewModel &m_scheduleViewModel;
    QBindable<bool> m_isPresented;
    MonthCalendar m_calendar;
    ClockTimeFields m_timeFields;
    bool m_isGoalTextFocused = false;
};

} // namespace tarne
