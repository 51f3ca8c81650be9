#pragma once

#include "DiskRecording.h"

#include <map>
#include <random>
#include <string>
#include <vector>

namespace tarne::test {

/// What a power cut does to that which no sync has brought to the disk.
enum class Fate {
    Kept,       ///< All of it is there.
    Dropped,    ///< Nothing of it is there.
    NamesAlone, ///< New names are there, and what was written is not.
    BytesAlone, ///< What was written is there, and new names are not.
    Torn,       ///< All is there but the end of the last write: it was cut at a sector or a page.
    Zeroed,     ///< The files have their new lengths, and zeros where they have grown.
    Mixed,      ///< Any of it is there without what came before it; of some writes, some sectors.
};

/// The disk below a folder, as far as it has come in a recording, whose steps must outlive it.
class CutDisk {
public:
    explicit CutDisk(const FileTree &initial);

    void follow(const DiskStep &step);

    /// What is there after a power cut now.
    [[nodiscard]] FileTree after(Fate fate, std::minstd_rand &random) const;

private:
    struct File {
        std::string onDisk;
        std::vector<const DiskStep *> unsynced; ///< Writes and truncations.
    };
    /// Which file a name is for; 0 for a folder.
    using Names = std::map<std::string, int>;

    static void applyTo(Names &names, const DiskStep &step);
    [[nodiscard]] Names namesAfter(Fate fate, std::minstd_rand &random) const;
    [[nodiscard]] std::string bytesAfter(const File &file, Fate fate,
                                         std::minstd_rand &random) const;

    std::map<int, File> m_files;
    Names m_namesOnDisk;
    std::vector<const DiskStep *> m_unsyncedNames;
    const DiskStep *m_last = nullptr;
};

} // namespace tarne::test
