#pragma once

#include "DefaultsFolder.h"

#include <QFile>

namespace tarne {

/// The lock by which one program at a time has the store of a folder: on `defaults.lock` in it.
///
/// It is a lock of the open file, which the kernel takes back however its holder ends, and which
/// other programs may ask about: docs/extension-bridge.md. Two bytes are locked. The holder gives
/// the second one back when it begins to end, and the first by its end. The file's content is the
/// address of the bus on which the holder can be asked for its window; empty when there is none.
class DefaultsLock {
public:
    enum class Holder {
        Us,
        Another,       ///< Another program runs.
        AnotherEnding, ///< Another program is about to end.
    };

    explicit DefaultsLock(const QString &folder) : m_folder(folder) {}

    /// Takes the lock if nobody has it; makes the folder and the file if absent. Returns who has it
    /// now. Where the disk allows no lock the program goes on without, and standard error is told.
    [[nodiscard]] Holder take();

    /// For the holder: tells the others that it is about to end.
    void beginEnding();

    /// For the holder: where it can be asked.
    void setAddress(const QString &busAddress);
    /// Where the holder can be asked.
    [[nodiscard]] QString address();

private:
    [[nodiscard]] bool open();

    DefaultsFolder m_folder;
    QFile m_file;
};

} // namespace tarne
