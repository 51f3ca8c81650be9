#pragma once

#include "DefaultsStartup.h"

#include <memory>

namespace tarne {

/// What is committed together.
struct DefaultsBatch {
    DefaultsChanges changes;
    Date moment; ///< When it was handed over.
    /// Whether it may wait until the system writes it to the disk by itself.
    bool isRelaxed = false;
};

/// Saves batches into the store's file, whatever becomes of it.
///
/// While the disk refuses, what was handed over is kept and saved with the next attempt, and one
/// line on standard error tells so. A file that proves to be damaged is replaced once, by one with
/// all values. May be used from any one thread at a time; `save` waits for the disk.
class DefaultsSaver {
public:
    DefaultsSaver(DefaultsFolder folder, OpenedDefaults opened, Date now);

    /// Takes a batch over; it is saved by the next call of `save`.
    void keep(DefaultsBatch batch);

    /// Brings what was kept onto the disk, in one commit.
    void save();

    /// Whether the last attempt failed, so that another one is worth while.
    [[nodiscard]] bool isRefused() const { return m_isRefused; }

    /// What the file holds or is to hold.
    [[nodiscard]] const DefaultsValues &values() const { return m_values; }

    /// The moment of the latest batch.
    [[nodiscard]] Date moment() const { return m_now; }

    /// The open file; null while there is none.
    [[nodiscard]] SQLiteFile *file() const { return m_file.get(); }

private:
    void saveIntoFile();
    void saveIntoNewFile();
    void reportRefusal(const QString &reason);

    const DefaultsFolder m_folder;
    DefaultsValues m_values;
    DefaultsChanges m_pending;      ///< What the file does not hold yet.
    bool m_isPendingRelaxed = true; ///< Whether all of that may wait for the disk.
    std::unique_ptr<SQLiteFile> m_file;
    Saving m_saving;
    Date m_now;
    bool m_isRefused; ///< The last attempt failed, and standard error has been told.
    bool m_hasReplacedFile = false;
};

} // namespace tarne
