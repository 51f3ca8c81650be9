#include "DesktopLog.h"

namespace tarne {

Q_LOGGING_CATEGORY(desktopLog, "tarne.desktop")

} // namespace tarne
