#pragma once

#include "DefaultsFolder.h"
#include "ProgramLock.h"

#include <QFile>

namespace tarne {

/// The lock by which one program at a time has the store of a folder: on `defaults.lock` in it.
///
/// It is a lock of the open file, which the kernel takes back however its holder ends, and which
/// other programs may ask about: docs/extension-bridge.md. Two bytes are locked. The holder gives
/// the second one back when it begins to end, and the first by its end. The file's content is the
/// address of the bus on which the holder can be asked for its window; empty when there is none.
class DefaultsLock final : public ProgramLock {
public:
    explicit DefaultsLock(const QString &folder) : DefaultsLock(DefaultsFolder(folder)) {}
    explicit DefaultsLock(DefaultsFolder folder) : m_folder(std::move(folder)) {}

    /// Makes the folder and the file if absent. Standard error is told of a disk that allows no
    /// lock.
    [[nodiscard]] Holder take() override;
    void beginEnding() override;
    void setAddress(const QString &busAddress) override;
    [[nodiscard]] QString address() override;

private:
    [[nodiscard]] bool open();

    DefaultsFolder m_folder;
    QFile m_file;
};

} // namespace tarne
