#pragma once

#include "Date.h"

namespace tarne {

/// The present moment by the system's wall clock: for the default of a record. Code that
/// reckons with time takes a Clock. Callable from any thread.
[[nodiscard]] Date currentDate();

} // namespace tarne
