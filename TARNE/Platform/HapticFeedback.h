#pragma once

namespace tarne {

/// The device's haptic cue, where there is one.
class HapticFeedback {
public:
    virtual ~HapticFeedback() = default;

    /// One cue of the pattern "level change", now. Never fails: without hardware nothing happens.
    virtual void performLevelChange() = 0;
};

} // namespace tarne
