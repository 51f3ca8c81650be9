#pragma once

#include <QString>

namespace tarne {

/// "HH:MM:SS" with at least two digits each. A fraction of a second is dropped;
/// what 64 bits do not hold is saturated, and what is no number reads as 0.
[[nodiscard]] QString hoursMinutesSeconds(double seconds);

} // namespace tarne
