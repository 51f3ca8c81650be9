#pragma once

#include "Clock.h"
#include "RunLoop.h"

#include <map>
#include <vector>

namespace tarne::test {

/// A clock and a run loop under the test's hand: time stands still until `advance`.
///
/// A session of three hours runs in milliseconds, with every tick and every delayed block at its
/// moment and in the order of the real loop.
class ManualTime final : public Clock, public RunLoop {
public:
    /// Begins at noon of 2026-03-02 (UTC), a Monday.
    explicit ManualTime(Date start = Date::fromUnixSeconds(1772452800.0)) : m_now(start) {}

    Date now() const override { return m_now; }

    void async(Block block) override;
    void asyncAfter(Seconds delay, Block block) override;
    Timer scheduleRepeating(Seconds interval, Block block) override;
    void invalidate(Timer timer) override;

    /// Runs what was posted and what is due, without moving the time.
    void runPending() { advance(Seconds{0}); }

    /// Moves both clocks forward and runs everything that falls due on the way.
    void advance(Seconds duration);

    /// Sets the wall clock, as a user or a time server would; no timer notices.
    void setWallClock(Date now) { m_now = now; }

    /// The machine sleeps: the wall clock goes on, timers and delays stand still.
    void sleep(Seconds duration) { m_now = m_now + duration.count(); }

    /// The main thread is busy: both clocks go on, nothing runs, timers miss their firings.
    void block(Seconds duration);

    std::size_t timerCount() const { return m_timers.size(); }
    std::size_t pendingBlockCount() const { return m_blocks.size(); }

private:
    struct Repeating {
        double interval;
        double next;
        Block block;
    };
    using Order = std::pair<double, quint64>; ///< Moment due, then sequence.

    bool runNext(double limit);

    Date m_now;
    double m_uptime = 0.0; ///< Seconds of the monotonic clock.
    quint64 m_nextSequence = 1;
    std::map<Order, Block> m_blocks;
    std::map<quint64, Repeating> m_timers;
};

} // namespace tarne::test
