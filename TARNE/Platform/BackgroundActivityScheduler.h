#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace tarne {

/// A one-shot activity that asks the desktop not to suspend the process while it lasts: not
/// repeating, of user-initiated quality of service, with no interval or tolerance.
class BackgroundActivity {
public:
    using Finished = std::function<void()>;

    virtual ~BackgroundActivity() = default;

    /// Runs `block` once, on the main queue; the block calls the function it is given when the
    /// activity is over.
    virtual void schedule(std::function<void(Finished finished)> block) = 0;

    /// Ends the activity; a finish that is reported later is ignored. May be called repeatedly.
    virtual void invalidate() = 0;
};

/// Makes background activities.
class BackgroundActivityScheduler {
public:
    virtual ~BackgroundActivityScheduler() = default;

    /// `identifier` names the activity to the desktop, e.g. "com.tarne.timer".
    [[nodiscard]] virtual std::unique_ptr<BackgroundActivity>
    makeActivity(const QString &identifier) = 0;
};

} // namespace tarne
