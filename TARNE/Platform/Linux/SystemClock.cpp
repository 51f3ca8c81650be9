#include "SystemClock.h"

#include <ctime>

namespace tarne {

Date SystemClock::now() const {
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    // Seconds are moved to the reference date while they are integers: a double of seconds since
    // 1970 has one bit of fraction less.
    const auto whole = time.tv_sec - static_cast<time_t>(Date::unixSecondsOfReferenceDate);
    return Date::fromReferenceSeconds(static_cast<double>(whole) +
                                      static_cast<double>(time.tv_nsec) * 1e-9);
}

} // namespace tarne
