#pragma once

#include <QLoggingCategory>

namespace tarne {

/// Diagnostics of the desktop's services, on standard error.
Q_DECLARE_LOGGING_CATEGORY(desktopLog)

} // namespace tarne
