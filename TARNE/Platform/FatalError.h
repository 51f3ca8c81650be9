#pragma once

namespace tarne {

/// Ends the process where going on is ruled out: writes `reason` as one line on standard error,
/// then aborts. The reason holds no secret.
[[noreturn]] void fatalError(const char *reason);

} // namespace tarne
