#include "DefaultsWriter.h"

#include <algorithm>
#include <utility>

namespace tarne {

DefaultsWriter::DefaultsWriter(const DefaultsFolder &folder, OpenedDefaults opened,
                               QStringList keysToCopyFor, Date now,
                               std::chrono::milliseconds retryInterval)
    : m_keysToCopyFor(std::move(keysToCopyFor)),
      m_retryInterval(retryInterval),
      m_saver(folder, std::move(opened), now),
      m_copies(folder),
      m_thread([this] { run(); }) {}

DefaultsWriter::~DefaultsWriter() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_wakeUp.notify_one();
    m_thread.join();
}

void DefaultsWriter::commit(DefaultsBatch batch) {
    {
        const std::lock_guard lock(m_mutex);
        m_incoming.push_back(std::move(batch));
    }
    m_wakeUp.notify_one();
}

void DefaultsWriter::run() {
    bool goesOn = true;
    while (goesOn) {
        if (SQLiteFile *file = m_saver.file()) {
            file->mergeLongLog();
            // First of all at the start: what the previous run left is what a copy is for.
            if (isWorthCopying())
                m_copies.copyOncePerDay(*file, m_saver.moment());
        }
        goesOn = takeBatches();
        m_saver.save();
    }
}

bool DefaultsWriter::isWorthCopying() const {
    return std::ranges::any_of(
        m_keysToCopyFor, [this](const QString &key) { return m_saver.values().contains(key); });
}

bool DefaultsWriter::takeBatches() {
    std::unique_lock lock(m_mutex);
    const auto hasWork = [this] { return m_isEnding || !m_incoming.empty(); };
    if (m_saver.isRefused())
        m_wakeUp.wait_for(lock, m_retryInterval, hasWork);
    else
        m_wakeUp.wait(lock, hasWork);
    auto batches = std::exchange(m_incoming, {});
    const bool goesOn = !m_isEnding;
    lock.unlock();
    for (DefaultsBatch &batch : batches)
        m_saver.keep(std::move(batch));
    return goesOn;
}

} // namespace tarne
