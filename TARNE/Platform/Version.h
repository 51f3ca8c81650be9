#pragma once

#include <QString>

namespace tarne {

/// The version of this program, as the build names it: "1.0.0".
[[nodiscard]] QString programVersion();

} // namespace tarne
