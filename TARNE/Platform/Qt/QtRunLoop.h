#pragma once

#include "RunLoop.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>
#include <mutex>
#include <queue>
#include <unordered_map>

namespace tarne {

/// The run loop on Qt's event loop.
///
/// Blocks and the firings of repeating timers wait in one queue ordered by the moment at which they
/// fell due, so that a thread that was blocked for seconds still runs them in their order; Qt alone
/// would run posted events before timers, and timers that are due at nearly the same time in any
/// order. Lives on the main thread; `async` and `asyncAfter` may be called from any thread.
class QtRunLoop final : public QObject, public RunLoop {
    Q_OBJECT

public:
    QtRunLoop();
    ~QtRunLoop() override;

    void async(Block block) override;
    void asyncAfter(Seconds delay, Block block) override;
    Timer scheduleRepeating(Seconds interval, Block block) override;
    void invalidate(Timer timer) override;

    using MonotonicTime = std::chrono::steady_clock::time_point;

    /// The last moment up to `now` at which a repeating timer was to fire that is first due at
    /// `due`. `now` is not before `due`, and `interval` is positive.
    [[nodiscard]] static MonotonicTime
    lastFiring(MonotonicTime due, MonotonicTime::duration interval, MonotonicTime now);

protected:
    bool event(QEvent *event) override;

private:
    struct Entry {
        MonotonicTime due;
        quint64 sequence;
        std::shared_ptr<Block> block;
        Timer timer; ///< Whose firing it is, instead of a block; none for a block.

        /// Orders the queue with the earliest entry on top.
        bool operator<(const Entry &other) const {
            return due != other.due ? due > other.due : sequence > other.sequence;
        }
    };

    struct Repeating {
        MonotonicTime::duration interval;
        std::shared_ptr<Block> block; ///< Shared with a firing that is on the stack.
    };

    void enqueue(MonotonicTime due, Block block, Timer timer = Timer::None);
    void runDueBlocks();
    /// Takes the first of what fell due until `limit`; null when there is nothing.
    std::shared_ptr<Block> takeDue(MonotonicTime limit);
    void armWakeUp();

    std::mutex m_mutex;
    std::priority_queue<Entry> m_entries; ///< Guarded by m_mutex.
    quint64 m_nextSequence = 1;           ///< Guarded by m_mutex.
    bool m_wakeUpPosted = false;          ///< Guarded by m_mutex.

    QTimer m_wakeUp;
    std::unordered_map<Timer, Repeating> m_timers; ///< The valid ones.
    quint64 m_nextTimer = 1;
};

} // namespace tarne
