#include "StoreLog.h"

namespace tarne {

Q_LOGGING_CATEGORY(storeLog, "tarne.store")

} // namespace tarne
