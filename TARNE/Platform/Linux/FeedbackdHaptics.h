#pragma once

#include "DBusService.h"
#include "HapticFeedback.h"

namespace tarne {

/// Haptic cues through feedbackd, where it runs.
class FeedbackdHaptics final : public HapticFeedback {
public:
    explicit FeedbackdHaptics(QDBusConnection sessionBus);

    void performLevelChange() override;

private:
    DBusService m_feedbackd;
};

} // namespace tarne
