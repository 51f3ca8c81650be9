#pragma once

#include "Log.h"
#include "UserNotificationCenter.h"

namespace tarne {

/// Asks for the permission to notify. A failure is logged, and nothing depends on the answer. `log`
/// outlives the request.
void requestNotificationPermission(UserNotificationCenter &userNotifications, Log &log);

} // namespace tarne
