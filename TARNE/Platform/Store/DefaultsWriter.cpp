#include "DefaultsWriter.h"

#include "DefaultsFault.h"
#include "StoreLog.h"

#include <algorithm>
#include <utility>

namespace tarne {

DefaultsWriter::DefaultsWriter(const DefaultsFolder &folder, OpenedDefaults opened,
                               QStringList keysToCopyFor, Date now,
                               std::chrono::milliseconds retryInterval)
    : m_folder(folder),
      m_keysToCopyFor(std::move(keysToCopyFor)),
      m_retryInterval(retryInterval),
      m_values(std::move(opened.values)),
      m_file(std::move(opened.file)),
      m_saving(opened.saving),
      m_now(now),
      m_copies(folder),
      m_isRefused(m_saving == Saving::WholeFile), // The startup was, and has told so.
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
        if (m_file)
            m_file->mergeLongLog();
        // First of all at the start: what the previous run left is what a copy is for.
        if (m_file && isWorthCopying())
            m_copies.copyOncePerDay(*m_file, m_now);
        goesOn = takeBatches();
        save();
    }
    m_file.reset();
}

bool DefaultsWriter::isWorthCopying() const {
    return std::ranges::any_of(m_keysToCopyFor,
                               [this](const QString &key) { return m_values.contains(key); });
}

bool DefaultsWriter::takeBatches() {
    std::unique_lock lock(m_mutex);
    const auto hasWork = [this] { return m_isEnding || !m_incoming.empty(); };
    if (m_isRefused)
        m_wakeUp.wait_for(lock, m_retryInterval, hasWork);
    else
        m_wakeUp.wait(lock, hasWork);
    auto batches = std::exchange(m_incoming, {});
    const bool goesOn = !m_isEnding;
    lock.unlock();
    for (DefaultsBatch &batch : batches)
        keep(std::move(batch));
    return goesOn;
}

void DefaultsWriter::keep(DefaultsBatch batch) {
    m_now = batch.moment;
    for (DefaultsChange &change : batch.changes) {
        if (change.value)
            m_values.insert(change.key, *change.value);
        else
            m_values.remove(change.key);
        std::erase_if(m_pending, [&](const auto &older) { return older.key == change.key; });
        m_pending.push_back(std::move(change));
    }
}

void DefaultsWriter::save() {
    if (m_saving == Saving::Nothing) {
        m_pending.clear();
        m_isRefused = false;
    }
    if (m_pending.empty() && m_saving != Saving::WholeFile)
        return;
    try {
        if (m_saving == Saving::Changes)
            saveIntoFile();
        else
            saveIntoNewFile();
        m_pending.clear();
        if (std::exchange(m_isRefused, false))
            qCInfo(storeLog) << "the defaults store is saved again";
    } catch (const DefaultsFault &fault) {
        // A lock says nothing against the connection; anything else may have.
        if (fault.kind() != DefaultsFault::Kind::Locked)
            m_file.reset();
        // All values are at hand: a new file takes the damaged one's place, once in a run.
        if (fault.kind() == DefaultsFault::Kind::Damaged && !m_hasReplacedFile &&
            std::exchange(m_saving, Saving::WholeFile) == Saving::Changes)
            return save();
        if (fault.kind() == DefaultsFault::Kind::Newer)
            m_saving = Saving::Nothing;
        reportRefusal(fault.reason());
    }
}

void DefaultsWriter::saveIntoFile() {
    if (m_file && !m_file->isInPlace()) {
        m_file->keepLogOnClose();
        m_file.reset();
    }
    if (!m_file) {
        DefaultsFolder(m_folder).create();
        m_file = std::make_unique<SQLiteFile>(m_folder.file(), SQLiteFile::Access::ReadWrite);
        if (m_file->isNew())
            m_pending = changesThatWrite(m_values);
    }
    m_file->write(m_pending);
}

void DefaultsWriter::saveIntoNewFile() {
    auto [file, name] = replaceDamagedFile(m_folder, m_values, m_now);
    m_file = std::move(file);
    m_saving = Saving::Changes;
    m_hasReplacedFile = true;
    qCWarning(storeLog).noquote() << "the damaged defaults store was set aside as" << name;
}

void DefaultsWriter::reportRefusal(const QString &reason) {
    if (std::exchange(m_isRefused, true))
        return;
    qCWarning(storeLog).noquote() << "the defaults store cannot be saved now:" << reason;
}

} // namespace tarne
