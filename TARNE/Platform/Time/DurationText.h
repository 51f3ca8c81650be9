#pragma once

#include <QString>

namespace tarne {

/// A length in whole seconds, its fraction dropped; saturated where 64 bits do not hold it, 0 where
/// it is no number.
[[nodiscard]] qint64 wholeSeconds(double seconds);

/// "HH:MM:SS" with at least two digits each. A fraction of a second is dropped.
[[nodiscard]] QString hoursMinutesSeconds(double seconds);

} // namespace tarne
