#include "CurrentDate.h"

#include <chrono>

namespace tarne {

Date currentDate() {
    using namespace std::chrono;
    // Moved to the reference date while it is an integer: a double of seconds since 1970 has one
    // bit of fraction less.
    const auto sinceReferenceDate =
        system_clock::now().time_since_epoch() -
        seconds(static_cast<seconds::rep>(Date::unixSecondsOfReferenceDate));
    return Date::fromReferenceSeconds(duration<double>(sinceReferenceDate).count());
}

} // namespace tarne
