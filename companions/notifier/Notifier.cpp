#include "Notifier.h"

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace tarne::notifier {

namespace {
constexpr auto retryInterval = 10s;
} // namespace

Notifier::Notifier(RequestFile &file, QDBusConnection sessionBus, const Clock &clock,
                   CurrentCalendar calendar)
    : m_file(file),
      m_clock(clock),
      m_calendar(std::move(calendar)),
      m_daemon(std::move(sessionBus)) {
    m_commitSoon.setSingleShot(true);
    m_commitSoon.setInterval(0);
    m_retry.setSingleShot(true);
    m_retry.setInterval(retryInterval);
    connect(&m_commitSoon, &QTimer::timeout, this, &Notifier::commit);
    connect(&m_retry, &QTimer::timeout, this, &Notifier::commit);
    connect(&m_daemon, &NotificationDaemon::activated, this, &Notifier::activated);
    connect(&m_daemon, &NotificationDaemon::clicksEnded, this, &Notifier::settled);
    for (const NotificationSchedule::Pending &pending : m_file.requests()) {
        if (pending.request.trigger)
            m_schedule.restore(pending);
        else
            m_immediate.push_back(pending.request);
    }
}

void Notifier::add(const NotificationRequest &request) {
    forget(request.identifier);
    const Date now = m_clock.now();
    if (!request.trigger) {
        m_immediate.push_back(request);
        m_file.put({request, now});
        return;
    }
    m_schedule.add(request, now, m_calendar());
    const auto &waiting = m_schedule.pending();
    if (!waiting.empty() && waiting.back().request.identifier == request.identifier)
        m_file.put(waiting.back());
}

void Notifier::remove(const QStringList &identifiers) {
    for (const QString &identifier : identifiers)
        forget(identifier);
}

void Notifier::removeAll() {
    remove(pending());
}

/// As if there had never been such a request.
void Notifier::forget(const QString &identifier) {
    m_schedule.remove({identifier});
    std::erase_if(m_immediate, [&](const auto &one) { return one.identifier == identifier; });
    if (m_deliveries.remove(identifier) > 0)
        m_daemon.withdraw({identifier});
    m_file.remove(identifier);
}

void Notifier::commit() {
    const Date now = m_clock.now();
    const Calendar calendar = m_calendar();
    if (m_file.save(now))
        m_retry.stop();
    else
        m_retry.start();
    for (const NotificationRequest &request : std::exchange(m_immediate, {}))
        deliver(request);
    for (const NotificationRequest &request : m_schedule.takeDue(now, calendar))
        deliver(request);
    Q_EMIT nextMomentChanged(m_schedule.nextMoment(calendar));
    Q_EMIT settled();
}

void Notifier::deliver(const NotificationRequest &request) {
    const quint64 number = ++m_lastDelivery;
    const QString &identifier = request.identifier;
    m_deliveries.insert(identifier, {number, request.trigger.has_value()});
    m_daemon.show(request, [this, identifier, number] { finish(identifier, number); });
}

void Notifier::finish(const QString &identifier, quint64 number) {
    const auto delivery = m_deliveries.constFind(identifier);
    if (delivery == m_deliveries.cend() || delivery->number != number)
        return; // It has been replaced or removed meanwhile.
    m_deliveries.erase(delivery);
    m_file.remove(identifier);
    m_commitSoon.start();
}

QStringList Notifier::pending() const {
    QStringList identifiers;
    for (const NotificationSchedule::Pending &pending : m_schedule.pending())
        identifiers += pending.request.identifier;
    for (auto delivery = m_deliveries.cbegin(); delivery != m_deliveries.cend(); ++delivery) {
        if (delivery->hasMoment)
            identifiers += delivery.key();
    }
    return identifiers;
}

bool Notifier::isIdle() const {
    return m_schedule.isEmpty() && m_immediate.empty() && m_deliveries.isEmpty() &&
           !m_commitSoon.isActive() && !m_retry.isActive() && !m_daemon.awaitsClicks();
}

} // namespace tarne::notifier
