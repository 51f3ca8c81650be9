#include "WallClockAlarm.h"

#include "DesktopLog.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>

#include <sys/timerfd.h>
#include <unistd.h>

namespace tarne {

WallClockAlarm::WallClockAlarm()
    : m_timer(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)) {
    if (m_timer < 0) {
        qCWarning(desktopLog, "no timer on the wall clock: %s", std::strerror(errno));
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_timer, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        quint64 expirations = 0;
        // Fails with ECANCELED when the clock was set; that is a ring as well.
        if (::read(m_timer, &expirations, sizeof expirations) < 0 && errno != ECANCELED)
            return;
        Q_EMIT rang();
    });
}

WallClockAlarm::~WallClockAlarm() {
    m_notifier.reset();
    if (m_timer >= 0)
        ::close(m_timer);
}

void WallClockAlarm::set(Date moment) {
    // Zero would disarm the timer, and the kernel's nanoseconds end in the year 2262.
    const double seconds = std::clamp(std::ceil(moment.secondsSince1970()), 1.0, 9e9);
    itimerspec spec{};
    spec.it_value.tv_sec = static_cast<time_t>(seconds);
    if (m_timer >= 0)
        timerfd_settime(m_timer, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &spec, nullptr);
}

void WallClockAlarm::clear() {
    const itimerspec disarmed{};
    if (m_timer >= 0)
        timerfd_settime(m_timer, 0, &disarmed, nullptr);
}

} // namespace tarne
