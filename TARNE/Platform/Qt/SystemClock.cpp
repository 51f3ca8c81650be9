#include "SystemClock.h"

#include "CurrentDate.h"

namespace tarne {

Date SystemClock::now() const {
    return currentDate();
}

} // namespace tarne
