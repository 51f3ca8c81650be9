#pragma once

#include "Calendar.h"
#include "Clock.h"
#include "Log.h"
#include "RunLoop.h"
#include "ScheduledGoal.h"
#include "UserDefaults.h"
#include "UserNotificationCenter.h"

#include <QObject>

#include <memory>
#include <vector>

namespace tarne {

/// What a schedule needs of the platform. Everything outlives the controller, and what was handed
/// to the run loop as well.
struct SchedulePlatform {
    const Clock &clock;
    RunLoop &runLoop;
    Log &log;
    UserDefaults &defaults;
    UserNotificationCenter &userNotifications;
    CurrentCalendar calendar;
};

/// Owns the scheduled goals, their stored list and their reminders, one hour ahead of each.
///
/// Made when the schedule screen comes up; the add-goal sheet works on the same instance. Goals
/// never expire and reminders are not issued again. A stored list that is unreadable reads as an
/// empty one and is replaced by the next save. Main thread only.
class ScheduleViewModel : public QObject {
    Q_OBJECT

public:
    using Goals = std::vector<ScheduledGoal>;

    /// Loads the stored goals and asks for the permission to notify.
    explicit ScheduleViewModel(SchedulePlatform platform);

    // Observable state. Every setting is followed by its signal, that of an equal value too: what
    // shows the state may have come to show something else meanwhile.

    /// All goals, in the order in which they were added.
    [[nodiscard]] const Goals &scheduledGoals() const { return *m_goals; }
    /// The day whose goals are listed, and the day of the next goal.
    [[nodiscard]] Date selectedDate() const { return m_selectedDate; }
    void setSelectedDate(Date date);
    [[nodiscard]] Date selectedTime() const { return m_selectedTime; }
    void setSelectedTime(Date time);
    [[nodiscard]] const QString &goalText() const { return m_goalText; }
    void setGoalText(const QString &text);

    // Worked out anew at each call. The lists are in ascending order of the goals' starts.

    /// Whether the text holds more than white space and line ends.
    [[nodiscard]] bool canAddGoal() const;
    /// Completed and past ones included.
    [[nodiscard]] Goals goalsForSelectedDate() const;
    /// Completed ones included.
    [[nodiscard]] Goals todaysGoals() const;
    /// Open ones that start strictly after now, without an upper limit.
    [[nodiscard]] Goals upcomingGoals() const;

    void loadScheduledGoals();
    void saveScheduledGoals();

    /// Adds a goal of the selected day, time and text as they stand, and empties the text. Does not
    /// ask `canAddGoal`; that is the sheet's part.
    void addGoal();
    /// Removes the goal and its pending reminder.
    void deleteGoal(const ScheduledGoal &goal);
    /// Ticks the goal off or on again; its reminder stays. An unknown goal is ignored.
    void toggleGoalCompletion(const ScheduledGoal &goal);

    [[nodiscard]] Calendar calendar() const { return m_platform.calendar(); }
    [[nodiscard]] Date now() const { return m_platform.clock.now(); }

Q_SIGNALS:
    void scheduledGoalsChanged();
    void selectedDateChanged();
    void selectedTimeChanged();
    void goalTextChanged();

private:
    void scheduleNotification(const ScheduledGoal &goal);
    void cancelNotification(const ScheduledGoal &goal);

    SchedulePlatform m_platform;
    /// Shared with the completions that are under way: a reminder that is accepted after the screen
    /// has closed is still noted and saved.
    std::shared_ptr<Goals> m_goals = std::make_shared<Goals>();
    Date m_selectedDate;
    Date m_selectedTime;
    QString m_goalText;
};

} // namespace tarne
