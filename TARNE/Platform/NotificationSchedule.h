#pragma once

#include "Clock.h"
#include "UserNotificationCenter.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace tarne {

/// The moments at which a calendar shows these components, the earlier first: two where the clock
/// is set back over them. Components that the clock jumps over give one moment, as much later as
/// the clock jumps. None when they name no day or time at all.
[[nodiscard]] std::vector<Date> momentsOf(const DateComponents &components,
                                          const Calendar &calendar);

/// The pending notification requests, as values: what waits, what is due, when to look again.
///
/// Requests keep their components. Their moments are worked out anew at every question, so a clock
/// that was set or a time zone that changed meanwhile counts.
class NotificationSchedule {
public:
    /// A request that waits for its moment.
    struct Pending {
        NotificationRequest request;
        Date added;

        friend bool operator==(const Pending &, const Pending &) = default;
    };

    /// Adds a request that has a trigger; one with the same identifier is replaced. A moment that
    /// is past already is dropped: it never falls due.
    void add(const NotificationRequest &request, Date now, const Calendar &calendar);

    /// Takes back a request that was added once, here or in another process. Its moment may have
    /// passed since; then it is due. Its components must name a day and a time.
    void restore(Pending pending);

    void remove(const QStringList &identifiers);
    void removeAll() { m_pending.clear(); }

    /// Takes out what is due at `now`, the earliest first.
    [[nodiscard]] std::vector<NotificationRequest> takeDue(Date now, const Calendar &calendar);

    /// The earliest moment, or none when nothing is pending.
    [[nodiscard]] std::optional<Date> nextMoment(const Calendar &calendar) const;

    [[nodiscard]] bool isEmpty() const { return m_pending.empty(); }

    /// What waits, in the order in which it was added.
    [[nodiscard]] const std::vector<Pending> &pending() const { return m_pending; }

    /// When a request falls due by this calendar.
    [[nodiscard]] static Date moment(const Pending &pending, const Calendar &calendar);

private:
    std::vector<Pending> m_pending; ///< In the order in which they were added.
};

} // namespace tarne
