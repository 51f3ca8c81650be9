#pragma once

#include <QLoggingCategory>

namespace tarne {

/// Diagnostics of the defaults store, "tarne.store" on standard error.
Q_DECLARE_LOGGING_CATEGORY(storeLog)

} // namespace tarne
