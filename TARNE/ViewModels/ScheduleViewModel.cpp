#include "ScheduleViewModel.h"

#include "NotificationPermission.h"
#include "StoredKeys.h"
#include "UuidText.h"

#include <QPointer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

using Goals = ScheduleViewModel::Goals;

constexpr QLatin1StringView userDefaultsKey = keys::scheduledGoals;

void save(const Goals &goals, UserDefaults &defaults) {
    if (const std::optional<QByteArray> data = encodeScheduledGoals(goals))
        defaults.setObject(userDefaultsKey, *data);
}

Goals::iterator find(Goals &goals, const QUuid &id) {
    return std::ranges::find_if(goals, [&](const ScheduledGoal &goal) { return goal.id == id; });
}

/// The goals that `belongs(goal, start)` wants, in ascending order of their starts. A start is
/// worked out once a goal, since that asks the time zone's rules.
template <class Belongs>
Goals sortedByStart(const Goals &goals, const Calendar &calendar, const Belongs &belongs) {
    std::vector<std::pair<Date, const ScheduledGoal *>> chosen;
    for (const ScheduledGoal &goal : goals) {
        if (const Date start = goal.scheduledDateTime(calendar); belongs(goal, start))
            chosen.emplace_back(start, &goal);
    }
    std::ranges::stable_sort(chosen,
                             [](const auto &a, const auto &b) { return a.first < b.first; });
    Goals sorted;
    sorted.reserve(chosen.size());
    for (const auto &[start, goal] : chosen)
        sorted.push_back(*goal);
    return sorted;
}

} // namespace

ScheduleViewModel::ScheduleViewModel(SchedulePlatform platform)
    : m_platform(std::move(platform)),
      m_selectedDate(m_platform.clock.now()),
      m_selectedTime(m_selectedDate) {
    loadScheduledGoals();
    requestNotificationPermission(m_platform.userNotifications, m_platform.log);
}

void ScheduleViewModel::setSelectedDate(Date date) {
    m_selectedDate = date;
    Q_EMIT selectedDateChanged();
}

void ScheduleViewModel::setSelectedTime(Date time) {
    m_selectedTime = time;
    Q_EMIT selectedTimeChanged();
}

void ScheduleViewModel::setGoalText(const QString &text) {
    m_goalText = text;
    Q_EMIT goalTextChanged();
}

bool ScheduleViewModel::canAddGoal() const {
    return !QStringView(m_goalText).trimmed().isEmpty();
}

ScheduleViewModel::Goals ScheduleViewModel::goalsForSelectedDate() const {
    const Calendar calendar = m_platform.calendar();
    return sortedByStart(*m_goals, calendar, [&](const ScheduledGoal &goal, Date) {
        return calendar.isDateInSameDay(goal.date, m_selectedDate);
    });
}

ScheduleViewModel::Goals ScheduleViewModel::todaysGoals() const {
    const Calendar calendar = m_platform.calendar();
    const Date now = m_platform.clock.now();
    return sortedByStart(*m_goals, calendar, [&](const ScheduledGoal &goal, Date) {
        return goal.isToday(calendar, now);
    });
}

ScheduleViewModel::Goals ScheduleViewModel::upcomingGoals() const {
    const Date now = m_platform.clock.now();
    return sortedByStart(
        *m_goals, m_platform.calendar(),
        [&](const ScheduledGoal &goal, Date start) { return start > now && !goal.isCompleted; });
}

void ScheduleViewModel::loadScheduledGoals() {
    const std::optional<QByteArray> data = m_platform.defaults.dataForKey(userDefaultsKey);
    if (!data)
        return;
    std::optional<Goals> stored = decodeScheduledGoals(*data);
    if (!stored)
        return;
    *m_goals = std::move(*stored);
    Q_EMIT scheduledGoalsChanged();
}

void ScheduleViewModel::saveScheduledGoals() {
    save(*m_goals, m_platform.defaults);
}

void ScheduleViewModel::addGoal() {
    const ScheduledGoal goal(m_selectedDate, m_selectedTime, m_goalText);
    m_goals->push_back(goal);
    Q_EMIT scheduledGoalsChanged();
    saveScheduledGoals();
    scheduleNotification(goal);
    setGoalText({});
    setSelectedTime(m_platform.clock.now());
}

void ScheduleViewModel::deleteGoal(const ScheduledGoal &goal) {
    const ScheduledGoal deleted = goal; // It may be the list's own.
    std::erase_if(*m_goals, [&](const ScheduledGoal &other) { return other.id == deleted.id; });
    Q_EMIT scheduledGoalsChanged();
    saveScheduledGoals();
    cancelNotification(deleted);
}

void ScheduleViewModel::toggleGoalCompletion(const ScheduledGoal &goal) {
    const auto found = find(*m_goals, goal.id);
    if (found == m_goals->end())
        return;
    found->isCompleted = !found->isCompleted;
    Q_EMIT scheduledGoalsChanged();
    saveScheduledGoals();
}

void ScheduleViewModel::scheduleNotification(const ScheduledGoal &goal) {
    const Calendar calendar = m_platform.calendar();
    DateComponents trigger = calendar.dateComponents(goal.notificationDateTime(calendar));
    trigger.second = 0;
    const NotificationRequest request{
        uuidString(goal.id),
        {u"Focus Session Reminder"_s,
         u"Your scheduled focus session '"_s + goal.goal + u"' starts in 1 hour"_s},
        trigger};

    const auto noteAcceptance = [id = goal.id, goals = m_goals, &defaults = m_platform.defaults,
                                 controller = QPointer(this)] {
        const auto found = find(*goals, id);
        if (found == goals->end())
            return;
        found->notificationScheduled = true;
        if (controller)
            Q_EMIT controller->scheduledGoalsChanged();
        save(*goals, defaults);
    };
    m_platform.userNotifications.add(
        request, [noteAcceptance, &log = m_platform.log,
                  &runLoop = m_platform.runLoop](const std::optional<QString> &error) {
            if (error)
                log.line(u"Error scheduling notification: "_s + *error);
            else
                runLoop.async(noteAcceptance);
        });
}

void ScheduleViewModel::cancelNotification(const ScheduledGoal &goal) {
    m_platform.userNotifications.removePendingNotificationRequests({uuidString(goal.id)});
}

} // namespace tarne
