#include "FreedesktopUserNotificationCenter.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne {

namespace {

/// Nothing tells of a changed time zone, so moments are worked out anew this often while something
/// is pending.
constexpr auto reviewInterval = 10s;

} // namespace

FreedesktopUserNotificationCenter::FreedesktopUserNotificationCenter(QDBusConnection sessionBus,
                                                                     const Clock &clock,
                                                                     CurrentCalendar calendar)
    : m_daemon(std::move(sessionBus)), m_clock(clock), m_calendar(std::move(calendar)) {
    m_review.setInterval(reviewInterval);
    connect(&m_daemon, &NotificationDaemon::activated, this,
            &FreedesktopUserNotificationCenter::activated);
    connect(&m_review, &QTimer::timeout, this, &FreedesktopUserNotificationCenter::showWhatIsDue);
    connect(&m_alarm, &WallClockAlarm::rang, this,
            &FreedesktopUserNotificationCenter::showWhatIsDue);
}

std::optional<QString> FreedesktopUserNotificationCenter::busError() const {
    return m_daemon.isBusConnected() ? std::nullopt : std::optional(u"There is no session bus."_s);
}

void FreedesktopUserNotificationCenter::requestAuthorization(
    std::function<void(bool granted, std::optional<QString> error)> done) {
    const auto answer = [done = std::move(done), error = busError()] { done(!error, error); };
    QMetaObject::invokeMethod(this, answer, Qt::QueuedConnection);
}

void FreedesktopUserNotificationCenter::add(const NotificationRequest &request, Completion done) {
    const auto error = busError();
    if (!error && request.trigger) {
        addMadeAt(m_clock.now(), request);
    } else if (!error) {
        m_daemon.show(request);
    }
    if (done)
        QMetaObject::invokeMethod(
            this, [done = std::move(done), error] { done(error); }, Qt::QueuedConnection);
}

void FreedesktopUserNotificationCenter::addMadeAt(Date made, const NotificationRequest &request) {
    m_schedule.add(request, made, m_calendar());
    showWhatIsDue();
}

void FreedesktopUserNotificationCenter::removePendingNotificationRequests(
    const QStringList &identifiers) {
    m_schedule.remove(identifiers);
    showWhatIsDue();
}

void FreedesktopUserNotificationCenter::removeAllPendingNotificationRequests() {
    m_schedule.removeAll();
    showWhatIsDue();
}

void FreedesktopUserNotificationCenter::showWhatIsDue() {
    const Calendar calendar = m_calendar();
    for (const NotificationRequest &request : m_schedule.takeDue(m_clock.now(), calendar))
        m_daemon.show(request);
    const auto next = m_schedule.nextMoment(calendar);
    if (!next) {
        m_alarm.clear();
        m_review.stop();
        return;
    }
    m_alarm.set(*next);
    if (!m_review.isActive())
        m_review.start();
}

} // namespace tarne
