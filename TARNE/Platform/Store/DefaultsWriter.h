#pragma once

#include "DailyCopies.h"
#include "DefaultsSaver.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace tarne {

/// Commits batches on a thread of its own, with the only connection that writes.
///
/// A batch becomes visible whole or not at all. While the disk refuses, what was handed over is
/// kept and tried again, and one line on standard error tells so. Called from the main thread; no
/// call waits for the disk but the destructor.
class DefaultsWriter {
public:
    /// A day's copy is made once the store has one of `keysToCopyFor`.
    /// `retryInterval`: how long to wait after a refusal while nothing new comes.
    DefaultsWriter(const DefaultsFolder &folder, OpenedDefaults opened, QStringList keysToCopyFor,
                   Date now, std::chrono::milliseconds retryInterval);
    /// Commits what is left, with one attempt more if the last was refused, and closes the file.
    ~DefaultsWriter();
    DefaultsWriter(const DefaultsWriter &) = delete;
    DefaultsWriter &operator=(const DefaultsWriter &) = delete;

    void commit(DefaultsBatch batch);

private:
    // All below runs on the writer's thread.
    void run();
    bool isWorthCopying() const;
    /// Waits for work; returns false when the destructor asked for the end.
    bool takeBatches();

    const QStringList m_keysToCopyFor;
    const std::chrono::milliseconds m_retryInterval;

    std::mutex m_mutex;
    std::condition_variable m_wakeUp;
    std::vector<DefaultsBatch> m_incoming; ///< Guarded by m_mutex.
    bool m_isEnding = false;               ///< Guarded by m_mutex.

    // Used by the writer's thread alone, until it has ended.
    DefaultsSaver m_saver;
    DailyCopies m_copies;

    std::thread m_thread; ///< Last: it uses all of the above.
};

} // namespace tarne
