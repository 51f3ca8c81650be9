#pragma once

#include "FileTree.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarne::test {

/// One thing that was done to the files below the recorded folder.
struct DiskStep {
    enum class Kind {
        Create,     ///< `file` comes into being, under `name`.
        Write,      ///< `bytes` at `position` of `file`.
        Truncate,   ///< `file` gets the length `position`.
        SyncFile,   ///< `file` is on the disk.
        MakeFolder, ///< The folder `name`.
        Link,       ///< `file` gets another name, `newName`.
        Rename,     ///< What was called `name` is called `newName`.
        Remove,     ///< The name is gone.
        SyncFolder, ///< The names in the folder `name` are on the disk.
        Mark,       ///< The test's own; `position` is its number.
    };

    Kind kind;
    int file = 0; ///< Which file, whatever it is called.
    std::string name = {};
    std::string newName = {};
    std::int64_t position = 0;
    std::string bytes = {};
};

/// Notes what this process does to the files below one folder, in the order in which the system did
/// it. It takes the place of the system's own functions, for all libraries of the process. One
/// recording at a time.
class DiskRecording {
public:
    /// The files that are there already are taken for being on the disk.
    explicit DiskRecording(std::string folder);
    ~DiskRecording() { end(); }
    DiskRecording(const DiskRecording &) = delete;
    DiskRecording &operator=(const DiskRecording &) = delete;

    /// Notes something that the test wants to find again between the other steps.
    void mark(std::int64_t number);

    void end();

    /// After the end.
    [[nodiscard]] const std::vector<DiskStep> &steps() const { return m_steps; }
    /// What lay there in the beginning. Its files have the numbers 1, 2, ... in the tree's order.
    [[nodiscard]] const FileTree &initial() const { return m_initial; }

private:
    FileTree m_initial;
    std::vector<DiskStep> m_steps;
};

} // namespace tarne::test
