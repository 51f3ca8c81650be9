#pragma once

#include "Clock.h"

namespace tarne {

/// The machine's wall clock, to the nanosecond.
class SystemClock final : public Clock {
public:
    Date now() const override;
};

} // namespace tarne
