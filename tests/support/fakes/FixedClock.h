#pragma once

#include "Calendar.h"
#include "Clock.h"

namespace tarne::test {

/// Stays where the test puts it.
class FixedClock final : public Clock {
public:
    Date now() const override { return moment; }
    Date moment = Date::fromUnixSeconds(1772445600.0); ///< 2026-03-02T10:00:00 UTC
};

inline Calendar utc() {
    return Calendar(QTimeZone::utc(), QLocale::c());
}

} // namespace tarne::test
