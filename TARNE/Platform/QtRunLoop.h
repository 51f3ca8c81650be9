#pragma once

#include "RunLoop.h"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <memory>
#include <mutex>
#include <queue>
#include <unordered_map>
#include <vector>

namespace tarne {

/// The run loop on Qt's event loop.
///
/// Blocks wait in one queue ordered by the moment at which they fell due, so that a thread that was
/// blocked for seconds still runs them in their order; Qt alone would run posted events before
/// timers. Lives on the main thread; `async` and `asyncAfter` may be called from any thread.
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

    /// The moment after `now` at which a repeating timer that was due at `due` fires next: a whole
    /// number of intervals after `due`, however late the thread is. `interval` is positive.
    [[nodiscard]] static MonotonicTime
    nextFiring(MonotonicTime due, MonotonicTime::duration interval, MonotonicTime now);

protected:
    bool event(QEvent *event) override;

private:
    struct Entry {
        MonotonicTime due;
        quint64 sequence;
        std::shared_ptr<Block> block;

        /// Orders the queue with the earliest entry on top.
        bool operator<(const Entry &other) const {
            return due != other.due ? due > other.due : sequence > other.sequence;
        }
    };

    struct Repeating {
        MonotonicTime due;
        MonotonicTime::duration interval;
        Block block;
        QTimer timer; ///< For the next firing alone.
    };

    void enqueue(MonotonicTime due, Block block);
    void runDueBlocks();
    void armWakeUp();
    static void fire(Repeating &repeating);
    static void startUntil(QTimer &timer, MonotonicTime due);

    std::mutex m_mutex;
    std::priority_queue<Entry> m_entries;
    quint64 m_nextSequence = 1;
    bool m_wakeUpPosted = false;

    QTimer m_wakeUp;
    std::unordered_map<quint64, std::unique_ptr<Repeating>> m_timers;
    quint64 m_nextTimer = 1;
    /// Invalidated timers, until none of them can be on the stack.
    std::vector<std::unique_ptr<Repeating>> m_endedTimers;
};

} // namespace tarne
