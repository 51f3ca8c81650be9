#pragma once

#include "Bundle.h"
#include "Log.h"

#include <QLatin1StringView>

#include <optional>

namespace tarne {

inline constexpr QLatin1StringView serverExecutableName{"tarne-server"};

/// Looks for the classification server: among the application's resources, then in at most ten
/// folders above the application, then in the current directory, which takes precedence over the
/// folders. A file that exists is found, executable or not. Every step is logged.
[[nodiscard]] std::optional<QString> findServerExecutable(const Bundle &bundle, Log &log);

} // namespace tarne
