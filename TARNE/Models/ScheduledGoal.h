#pragma once

#include "Calendar.h"
#include "Date.h"

#include <QByteArray>
#include <QString>
#include <QUuid>

#include <optional>
#include <vector>

namespace tarne {

namespace json {
template <class Record>
struct JsonForm;
}

/// A piece of focused work that is planned for a calendar day and a clock time: a plain value.
/// Identity is `id`, which is also the identity of its reminder.
/// Stored: a new member is optional, or no stored document reads any more.
struct ScheduledGoal {
    QUuid id;
    Date date;    ///< Only its year, month and day count.
    Date time;    ///< Only its hour and minute count.
    QString goal; ///< As typed, not trimmed.
    bool isCompleted = false;
    bool notificationScheduled = false; ///< The notification centre took the reminder.

    /// A new goal with a new `id`, not completed and without a reminder.
    ScheduledGoal(Date date, Date time, QString goal);

    /// The goal's start, on a whole minute: the day of `date` with the clock time of `time`, or
    /// `date` itself where the calendar has no such moment.
    [[nodiscard]] Date scheduledDateTime(const Calendar &calendar) const;

    /// The moment of the reminder, one hour before the start.
    [[nodiscard]] Date notificationDateTime(const Calendar &calendar) const;

    [[nodiscard]] bool isToday(const Calendar &calendar, Date now) const;

    /// `date`, not the start, lies between now and seven calendar days later, both included. No
    /// list asks this: the upcoming goals of the schedule have a rule of their own.
    [[nodiscard]] bool isUpcoming(const Calendar &calendar, Date now) const;

    friend bool operator==(const ScheduledGoal &, const ScheduledGoal &) = default;

private:
    friend struct json::JsonForm<ScheduledGoal>;
    ScheduledGoal() = default;
};

/// The goals of a JSON document in its order, or none when it is unreadable: one record that lacks
/// any of its six keys makes the whole list so.
[[nodiscard]] std::optional<std::vector<ScheduledGoal>>
decodeScheduledGoals(const QByteArray &document);

/// The JSON document of the goals, or none when one of their moments is not finite.
[[nodiscard]] std::optional<QByteArray>
encodeScheduledGoals(const std::vector<ScheduledGoal> &goals);

} // namespace tarne
