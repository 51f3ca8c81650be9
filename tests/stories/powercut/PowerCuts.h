#pragma once

#include "CutDisk.h"

#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace tarne::test {

/// What was committed, one entry a value. Equal where the same was committed.
using Contents = QStringList;

/// The commits of a recorded run, and what its power cuts may leave of them.
///
/// The recording is marked when a commit is handed over and when it is acknowledged. A power cut in
/// between may take the whole commit; never a part of it.
class PowerCuts {
public:
    enum class Promise {
        Lasting, ///< What was acknowledged outlives a power cut.
        Passing, ///< It outlives what ends the program, and a power cut may take it.
    };

    /// `initial` is what a start finds in the folder before anything was handed over.
    PowerCuts(std::string folder, Contents initial);

    /// Notes what is handed over next.
    void handOver(Contents contents);
    [[nodiscard]] const Contents &lastHandedOver() const { return m_commits.back(); }
    /// Notes that the last commit was acknowledged.
    void acknowledge(Promise promise);

    /// Opens the file in a folder as a start does, goes on with it, and returns what the start has
    /// found; none when the file or anything that belongs to it is not whole.
    using Start = std::function<std::optional<Contents>(const QString &folder)>;

    /// Cuts the power after every step of the recording, or after each `stride`-th, in each way
    /// that there is; fails the running test where a start finds what it must not, and prints the
    /// figures under `name`.
    void prove(const char *name, const Start &start, unsigned stride = 1);

private:
    struct Bounds {
        std::size_t handedOver = 0;
        std::size_t acknowledged = 0; ///< All that a kill must leave.
        std::size_t lasting = 0;      ///< All that a power cut must leave.
    };

    void note(Bounds bounds);
    void judge(const FileTree &tree, const Start &start, std::size_t lowest, std::size_t highest,
               const std::string &place);

    std::string m_folder;
    DiskRecording m_recording;
    std::vector<Contents> m_commits;
    std::vector<Bounds> m_marks; ///< By the number of the mark.
    QTemporaryDir m_state;
    int m_states = 0;
    int m_corrupt = 0;
    int m_lost = 0;
};

} // namespace tarne::test
