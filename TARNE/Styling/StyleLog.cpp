#include "StyleLog.h"

namespace tarne {

Q_LOGGING_CATEGORY(styleLog, "tarne.style")

} // namespace tarne
