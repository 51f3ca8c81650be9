#pragma once

#include "Date.h"

namespace tarne {

/// The wall clock. Nothing outside Platform asks the system for the time.
class Clock {
public:
    virtual ~Clock() = default;

    /// The current moment. Callable from any thread. May jump either way between two calls, since
    /// the user can set the clock.
    [[nodiscard]] virtual Date now() const = 0;
};

} // namespace tarne
