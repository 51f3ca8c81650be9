#include "NotificationSchedule.h"

#include <QDateTime>

#include <algorithm>

namespace tarne {

std::vector<Date> momentsOf(const DateComponents &components, const Calendar &calendar) {
    const QDate day(components.year, components.month, components.day);
    const QTime time(components.hour, components.minute, components.second);
    if (!day.isValid() || !time.isValid())
        return {};
    // The local time read as if it were UTC lies within 14 hours of the moment. The offsets well
    // before and well after it are the two that can hold there.
    const qint64 local = QDateTime(day, time, Qt::UTC).toSecsSinceEpoch();
    constexpr qint64 margin = qint64{36} * 60 * 60;
    const auto offsetAt = [&](qint64 seconds) {
        return calendar.timeZone().offsetFromUtc(QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC));
    };
    const auto momentWith = [&](qint64 offset) {
        return Date::fromUnixSeconds(static_cast<double>(local - offset));
    };
    const Date before = momentWith(offsetAt(local - margin));
    const Date after = momentWith(offsetAt(local + margin));

    std::vector<Date> moments;
    for (const Date moment : {std::min(before, after), std::max(before, after)}) {
        const bool isNew = moments.empty() || moments.back() != moment;
        if (isNew && calendar.dateComponents(moment) == components)
            moments.push_back(moment);
    }
    if (moments.empty())
        moments.push_back(before);
    return moments;
}

Date NotificationSchedule::moment(const Pending &pending, const Calendar &calendar) {
    const auto moments = momentsOf(*pending.request.trigger, calendar);
    const auto upcoming =
        std::ranges::find_if(moments, [&](Date moment) { return moment >= pending.added; });
    return upcoming == moments.end() ? moments.back() : *upcoming;
}

void NotificationSchedule::add(const NotificationRequest &request, Date now,
                               const Calendar &calendar) {
    remove({request.identifier});
    const auto moments = momentsOf(*request.trigger, calendar);
    if (!moments.empty() && moments.back() >= now)
        m_pending.push_back({request, now});
}

void NotificationSchedule::restore(Pending pending) {
    remove({pending.request.identifier});
    m_pending.push_back(std::move(pending));
}

void NotificationSchedule::remove(const QStringList &identifiers) {
    std::erase_if(m_pending, [&](const Pending &pending) {
        return identifiers.contains(pending.request.identifier);
    });
}

std::vector<NotificationRequest> NotificationSchedule::takeDue(Date now, const Calendar &calendar) {
    std::vector<std::pair<Date, NotificationRequest>> due;
    std::erase_if(m_pending, [&](const Pending &pending) {
        const Date when = moment(pending, calendar);
        if (when <= now)
            due.emplace_back(when, pending.request);
        return when <= now;
    });
    std::ranges::stable_sort(due, [](const auto &a, const auto &b) { return a.first < b.first; });
    std::vector<NotificationRequest> requests;
    requests.reserve(due.size());
    for (auto &[when, request] : due)
        requests.push_back(std::move(request));
    return requests;
}

std::optional<Date> NotificationSchedule::nextMoment(const Calendar &calendar) const {
    std::optional<Date> next;
    for (const Pending &pending : m_pending) {
        const Date when = moment(pending, calendar);
        next = next ? std::min(*next, when) : when;
    }
    return next;
}

} // namespace tarne
