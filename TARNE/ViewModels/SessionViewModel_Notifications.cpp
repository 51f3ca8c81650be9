// The notifications of a session: the permission, the scheduled one and the one at the run-out.

#include "SessionViewModel.h"

#include "NotificationPermission.h"
#include "RandomUuid.h"
#include "UuidText.h"

using namespace Qt::StringLiterals;

namespace tarne {

void SessionViewModel::requestNotificationPermissions() {
    requestNotificationPermission(m_platform.userNotifications, m_platform.log);
}

void SessionViewModel::scheduleCompletionNotification() {
    if (!m_sessionStartTime)
        return;
    m_platform.userNotifications.removeAllPendingNotificationRequests();
    const Date end = *m_sessionStartTime + m_originalDuration;
    m_platform.userNotifications.add(
        {.identifier = u"timer-completion"_s,
         .content = {.title = u"Session Complete! 🎉"_s,
                     .body = u"Great job! Your focus session is complete."_s},
         .trigger = m_platform.calendar().dateComponents(end)},
        [&log = m_platform.log](const std::optional<QString> &error) {
            if (error)
                log.line(u"Failed to schedule notification: "_s + *error);
        });
}

void SessionViewModel::cancelCompletionNotification() {
    m_platform.userNotifications.removeAllPendingNotificationRequests();
}

void SessionViewModel::sendCompletionNotification() {
    // The scheduled notification stays: the user gets both.
    m_platform.userNotifications.add(
        {.identifier = uuidString(randomUuid()),
         .content = {.title = u"Session Complete"_s,
                     .body = u"Great job! Your session is complete."_s},
         .trigger = std::nullopt},
        [](const std::optional<QString> &) {});
}

} // namespace tarne
