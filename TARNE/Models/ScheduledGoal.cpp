#include "ScheduledGoal.h"

#include "JsonCoder.h"
#include "RandomUuid.h"

namespace tarne {

template <>
struct json::JsonForm<ScheduledGoal> {
    static constexpr std::tuple members{
        member("id", &ScheduledGoal::id),
        member("date", &ScheduledGoal::date),
        member("time", &ScheduledGoal::time),
        member("goal", &ScheduledGoal::goal),
        member("isCompleted", &ScheduledGoal::isCompleted),
        member("notificationScheduled", &ScheduledGoal::notificationScheduled)};
    static ScheduledGoal blank() { return {}; }
};

ScheduledGoal::ScheduledGoal(Date date_, Date time_, QString goal_)
    : id(randomUuid()), date(date_), time(time_), goal(std::move(goal_)) {}

Date ScheduledGoal::scheduledDateTime(const Calendar &calendar) const {
    const DateComponents day = calendar.dateComponents(date);
    const DateComponents clock = calendar.dateComponents(time);
    return calendar.date({day.year, day.month, day.day, clock.hour, clock.minute, 0})
        .value_or(date);
}

Date ScheduledGoal::notificationDateTime(const Calendar &calendar) const {
    const Date start = scheduledDateTime(calendar);
    return calendar.dateByAdding(Calendar::Unit::hour, -1, start).value_or(start);
}

bool ScheduledGoal::isToday(const Calendar &calendar, Date now) const {
    return calendar.isDateInSameDay(date, now);
}

bool ScheduledGoal::isUpcoming(const Calendar &calendar, Date now) const {
    const Date end = calendar.dateByAdding(Calendar::Unit::day, 7, now).value_or(now);
    return date >= now && date <= end;
}

std::optional<std::vector<ScheduledGoal>> decodeScheduledGoals(const QByteArray &document) {
    return json::decode<std::vector<ScheduledGoal>>(document);
}

std::optional<QByteArray> encodeScheduledGoals(const std::vector<ScheduledGoal> &goals) {
    constexpr qsizetype typicalSize = 220;
    return json::encode(goals, 2 + static_cast<qsizetype>(goals.size()) * typicalSize);
}

} // namespace tarne
