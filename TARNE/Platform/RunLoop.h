#pragma once

#include <algorithm>
#include <chrono>
#include <functional>

#include <QtGlobal>

namespace tarne {

/// The main thread's queue and its repeating timers.
///
/// All blocks run on the main thread, one after the other. Delays are measured on the monotonic
/// clock: setting the wall clock moves none of them.
class RunLoop {
public:
    using Block = std::function<void()>;
    using Seconds = std::chrono::duration<double>;

    /// Names a scheduled timer; 0 is never used.
    enum class Timer : quint64 { None = 0 };

    virtual ~RunLoop() = default;

    /// Runs `block` once, after everything that was posted or has fallen due before. Callable from
    /// any thread.
    virtual void async(Block block) = 0;

    /// Runs `block` once, not before `delay` has passed. A block that fell due earlier runs before
    /// one that was posted later. A delay that is negative or no number counts as none, one of
    /// centuries as a century. Callable from any thread.
    virtual void asyncAfter(Seconds delay, Block block) = 0;

    /// Runs `block` every `interval`, which is positive, first after one interval, until
    /// `invalidate`. Firings missed while the thread was busy are not made up for, and the later
    /// ones keep their phase. Main thread only.
    [[nodiscard]] virtual Timer scheduleRepeating(Seconds interval, Block block) = 0;

    /// Ends a repeating timer, also from inside its own block. An ended or unknown timer is
    /// ignored. Main thread only.
    virtual void invalidate(Timer timer) = 0;

protected:
    /// A delay that every clock can reckon with; see `asyncAfter`.
    [[nodiscard]] static constexpr Seconds bounded(Seconds delay) {
        constexpr Seconds century = std::chrono::years(100);
        return delay > Seconds(0) ? std::min(delay, century) : Seconds(0);
    }
};

} // namespace tarne
