#include "PowerCuts.h"

#include "Proof.h"
#include "Rounds.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarne::test {

namespace {

constexpr std::array fates{
    std::pair{Fate::Kept, "kept"},     std::pair{Fate::Dropped, "dropped"},
    std::pair{Fate::Torn, "torn"},     std::pair{Fate::NamesAlone, "names alone"},
    std::pair{Fate::Zeroed, "zeroed"}, std::pair{Fate::BytesAlone, "bytes alone"},
    std::pair{Fate::Mixed, "mixed"},
};

/// How often what is drawn at random is drawn after each step.
int drawsOf(Fate fate) {
    const bool isDrawn = fate == Fate::Torn || fate == Fate::Mixed;
    return !isDrawn ? 1 : isLongProof() ? 20 : 4;
}

/// Under the sanitizers every tenth step has to do.
constexpr unsigned sanitizerStride = 10 / rounds(10);

/// In memory where there is such a folder: the states are many, and their own syncs mean nothing.
QString stateTemplate() {
    const QString name = u"power-cut-XXXXXX"_s;
    return QFileInfo(u"/dev/shm"_s).isWritable() ? u"/dev/shm/"_s + name
                                                 : QDir::temp().filePath(name);
}

} // namespace

PowerCuts::PowerCuts(std::string folder, Contents initial)
    : m_folder(std::move(folder)),
      m_recording(m_folder),
      m_commits{std::move(initial)},
      m_marks{Bounds()},
      m_state(stateTemplate()) {}

void PowerCuts::note(Bounds bounds) {
    m_recording.mark(static_cast<std::int64_t>(m_marks.size()));
    m_marks.push_back(bounds);
}

void PowerCuts::handOver(Contents contents) {
    m_commits.push_back(std::move(contents));
    Bounds bounds = m_marks.back();
    bounds.handedOver = m_commits.size() - 1;
    note(bounds);
}

void PowerCuts::acknowledge(Promise promise) {
    Bounds bounds = m_marks.back();
    bounds.acknowledged = bounds.handedOver;
    if (promise == Promise::Lasting)
        bounds.lasting = bounds.handedOver;
    note(bounds);
}

void PowerCuts::prove(const char *name, const Start &start, unsigned stride) {
    m_recording.end();
    std::minstd_rand random(proofSeed());
    CutDisk disk(m_recording.initial());
    Bounds bounds;
    unsigned number = 0;
    for (const DiskStep &step : m_recording.steps()) {
        disk.follow(step);
        if (step.kind == DiskStep::Kind::Mark)
            bounds = m_marks.at(static_cast<std::size_t>(step.position));
        else if (++number % (stride * sanitizerStride) == 0) {
            for (const auto &[fate, word] : fates) {
                const std::string place =
                    std::string(word) + " after step " + std::to_string(number);
                for (int draw = drawsOf(fate); draw > 0; --draw)
                    judge(disk.after(fate, random), start,
                          fate == Fate::Kept ? bounds.acknowledged : bounds.lasting,
                          bounds.handedOver, place);
            }
        }
    }
    // What was recorded is all that was done.
    EXPECT_TRUE(disk.after(Fate::Kept, random) == filesBelow(m_folder));
    printProof(name, QByteArray::number(m_states) + " states of " + QByteArray::number(number) +
                         " disk operations and " + QByteArray::number(m_commits.size() - 1) +
                         " commits, " + QByteArray::number(m_corrupt) + " corrupt, " +
                         QByteArray::number(m_lost) + " acknowledged values lost");
}

void PowerCuts::judge(const FileTree &tree, const Start &start, std::size_t lowest,
                      std::size_t highest, const std::string &place) {
    ++m_states;
    replaceFilesBelow(m_state.path().toStdString(), tree);
    const auto found = start(m_state.path());
    if (!found) {
        ++m_corrupt;
        ADD_FAILURE() << "not whole: " << place;
        return;
    }
    const auto first = m_commits.begin();
    const auto allowed = [&](std::size_t from) {
        return std::find(first + static_cast<std::ptrdiff_t>(from),
                         first + static_cast<std::ptrdiff_t>(highest) + 1,
                         *found) != first + static_cast<std::ptrdiff_t>(highest) + 1;
    };
    if (allowed(lowest))
        return;
    const bool wasCommitted = allowed(0);
    ++(wasCommitted ? m_lost : m_corrupt);
    ADD_FAILURE() << (wasCommitted ? "lost what was acknowledged: " : "never committed so: ")
                  << place << ", found " << qPrintable(found->join(u'\n'));
}

} // namespace tarne::test
