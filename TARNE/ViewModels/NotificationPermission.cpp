#include "NotificationPermission.h"

using namespace Qt::StringLiterals;

namespace tarne {

void requestNotificationPermission(UserNotificationCenter &userNotifications, Log &log) {
    userNotifications.requestAuthorization([&log](bool, const std::optional<QString> &error) {
        if (error)
            log.line(u"Notification permission error: "_s + *error);
    });
}

} // namespace tarne
