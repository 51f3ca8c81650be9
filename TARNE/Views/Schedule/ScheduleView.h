#pragma once

#include "AddGoalSheet.h"
#include "MonthCalendar.h"
#include "ScheduleViewModel.h"
#include "ScheduledGoalModel.h"

#include <QBindable>
#include <QObject>
#include <QProperty>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace tarne {

/// The planning screen: a calendar with two counters, and the goals of the selected day. It owns
/// its controller. No tab or menu opens it; who presents it passes the flag by which it closes.
class ScheduleView final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the presenter of the schedule.")
    Q_PROPERTY(bool showingAddGoal READ showingAddGoal NOTIFY showingAddGoalChanged FINAL)
    Q_PROPERTY(tarne::AddGoalSheet *addGoalSheet READ addGoalSheet CONSTANT FINAL)
    /// Without a limit.
    Q_PROPERTY(tarne::MonthCalendar *calendar READ calendar CONSTANT FINAL)
    Q_PROPERTY(tarne::ScheduledGoalModel *goals READ goals CONSTANT FINAL)
    Q_PROPERTY(QString selectedDateText READ selectedDateText NOTIFY goalsShown FINAL)
    Q_PROPERTY(QString goalsCountText READ goalsCountText NOTIFY goalsShown FINAL)
    Q_PROPERTY(int todaysCount READ todaysCount NOTIFY goalsShown FINAL)
    Q_PROPERTY(int upcomingCount READ upcomingCount NOTIFY goalsShown FINAL)

public:
    ScheduleView(SchedulePlatform platform, QBindable<bool> isPresented);

    [[nodiscard]] bool showingAddGoal() const { return m_showingAddGoal.value(); }
    [[nodiscard]] AddGoalSheet *addGoalSheet() { return &m_addGoalSheet; }
    [[nodiscard]] MonthCalendar *calendar() { return &m_calendar; }
    [[nodiscard]] ScheduledGoalModel *goals() { return &m_goals; }
    [[nodiscard]] QString selectedDateText() const;
    /// "1 goals scheduled": there is no singular.
    [[nodiscard]] QString goalsCountText() const;
    [[nodiscard]] int todaysCount() const { return m_todaysCount; }
    [[nodiscard]] int upcomingCount() const { return m_upcomingCount; }
    [[nodiscard]] ScheduleViewModel &scheduleViewModel() { return m_scheduleViewModel; }

    /// The "New Goal" and "Add Goal" buttons.
    Q_INVOKABLE void openAddGoal();
    Q_INVOKABLE void close();
    /// The round tick and the trash button of a row of `goals`.
    Q_INVOKABLE void toggleGoalCompletion(int row);
    Q_INVOKABLE void deleteGoal(int row);

Q_SIGNALS:
    void showingAddGoalChanged();
    /// The day, its goals or the counters may have changed.
    void goalsShown();

private:
    /// The moments and the calendar for which what is shown is right.
    struct Validity {
        Calendar calendar;
        Date from;
        Date until; ///< No longer included: the next start or midnight.
    };

    void show();
    void showUnlessStillRight();

    ScheduleViewModel m_scheduleViewModel;
    QBindable<bool> m_isPresented;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ScheduleView, bool, m_showingAddGoal, false,
                                         &ScheduleView::showingAddGoalChanged)
    AddGoalSheet m_addGoalSheet;
    MonthCalendar m_calendar;
    ScheduledGoalModel m_goals;
    int m_todaysCount = 0;
    int m_upcomingCount = 0;
    std::optional<Validity> m_validity;
};

} // namespace tarne
