#pragma once

#include <QLoggingCategory>

namespace tarne {

/// Diagnostics of what draws, "tarne.style" on standard error.
Q_DECLARE_LOGGING_CATEGORY(styleLog)

} // namespace tarne
