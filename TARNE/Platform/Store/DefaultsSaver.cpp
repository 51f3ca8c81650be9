#include "DefaultsSaver.h"

#include "DefaultsFault.h"
#include "StoreLog.h"

#include <utility>

namespace tarne {

DefaultsSaver::DefaultsSaver(DefaultsFolder folder, OpenedDefaults opened, Date now)
    : m_folder(std::move(folder)),
      m_values(std::move(opened.values)),
      m_file(std::move(opened.file)),
      m_saving(opened.saving),
      m_now(now),
      m_isRefused(m_saving == Saving::WholeFile) {} // The startup was, and has told so.

void DefaultsSaver::keep(DefaultsBatch batch) {
    m_now = batch.moment;
    m_isPendingRelaxed = m_isPendingRelaxed && batch.isRelaxed;
    for (DefaultsChange &change : batch.changes) {
        if (change.value)
            m_values.insert(change.key, *change.value);
        else
            m_values.remove(change.key);
        std::erase_if(m_pending, [&](const auto &older) { return older.key == change.key; });
        m_pending.push_back(std::move(change));
    }
}

void DefaultsSaver::save() {
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
        m_isPendingRelaxed = true;
        if (std::exchange(m_isRefused, false))
            qCInfo(storeLog).noquote() << m_folder.title() << "is saved again";
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

void DefaultsSaver::saveIntoFile() {
    if (m_file && !m_file->isInPlace()) {
        m_file->keepLogOnClose();
        m_file.reset();
    }
    if (!m_file) {
        m_folder.create();
        m_file = std::make_unique<SQLiteFile>(m_folder.file(), SQLiteFile::Access::ReadWrite);
        if (m_file->isNew()) {
            m_pending = changesThatWrite(m_values);
            m_isPendingRelaxed = false;
        }
    }
    m_file->write(m_pending,
                  m_isPendingRelaxed ? SQLiteFile::Commit::Relaxed : SQLiteFile::Commit::Durable);
}

void DefaultsSaver::saveIntoNewFile() {
    auto [file, name] = replaceDamagedFile(m_folder, m_values, m_now);
    m_file = std::move(file);
    m_saving = Saving::Changes;
    m_hasReplacedFile = true;
    qCWarning(storeLog).noquote() << m_folder.title() << "was damaged and set aside as" << name;
}

void DefaultsSaver::reportRefusal(const QString &reason) {
    if (std::exchange(m_isRefused, true))
        return;
    qCWarning(storeLog).noquote() << m_folder.title() << "cannot be saved now:" << reason;
}

} // namespace tarne
