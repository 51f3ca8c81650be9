#include "FolderWatch.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

/// A watch of a folder that may be absent, for files named "wanted".
class AFolderWatch : public testing::Test {
protected:
    void watch(const QString &folder) {
        m_watch.emplace(
            m_context.get_executor(), folder.toStdString(),
            FolderWatch::Handlers{.matters = [](std::string_view name) { return name == "wanted"; },
                                  .changed = [this] { ++changes; }});
        m_watch->start();
    }
    static void write(const QString &path) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.write("x");
    }
    /// Serves what has happened so far; how many changes were told.
    int changesSince(int before) {
        m_context.restart();
        m_context.poll();
        return changes - before;
    }

    QString folder() const { return m_place.filePath(u"above/folder"_s); }
    QString wanted() const { return folder() + u"/wanted"_s; }
    int changes = 0;

private:
    QTemporaryDir m_place;
    asio::io_context m_context{1};
    std::optional<FolderWatch> m_watch;
};

TEST_F(AFolderWatch, TellsOfAFileThatIsMadeWrittenOrRenamedToItsName) {
    QDir().mkpath(folder());
    watch(folder());
    write(wanted());
    EXPECT_GT(changesSince(0), 0);
    int before = changes;
    write(wanted());
    EXPECT_GT(changesSince(before), 0);
    write(folder() + u"/other"_s);
    before = (changesSince(0), changes);
    QFile::remove(wanted());
    QFile::rename(folder() + u"/other"_s, wanted());
    EXPECT_GT(changesSince(before), 0);
}

TEST_F(AFolderWatch, IsSilentAboutOtherFilesAndReadings) {
    QDir().mkpath(folder());
    write(wanted());
    watch(folder());
    write(folder() + u"/other"_s);
    QFile file(wanted());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    file.readAll();
    file.close();
    EXPECT_EQ(changesSince(0), 0);
}

TEST_F(AFolderWatch, FindsAFolderThatComesLaterAndWhatIsInIt) {
    watch(folder());
    EXPECT_EQ(changesSince(0), 0);
    QDir().mkpath(folder());
    write(wanted());
    EXPECT_GT(changesSince(0), 0);
    const int before = changes;
    write(wanted());
    EXPECT_GT(changesSince(before), 0);
}

TEST_F(AFolderWatch, FindsAFolderThatComesStepByStep) {
    watch(folder());
    QDir().mkpath(folder().section(u'/', 0, -2));
    EXPECT_EQ(changesSince(0), 0);
    QDir().mkpath(folder());
    EXPECT_GT(changesSince(0), 0);
    const int before = changes;
    write(wanted());
    EXPECT_GT(changesSince(before), 0);
}

TEST_F(AFolderWatch, TellsOfAFolderThatGoesAndComesBack) {
    QDir().mkpath(folder());
    watch(folder());
    QDir(folder()).removeRecursively();
    EXPECT_GT(changesSince(0), 0);
    int before = changes;
    QDir().mkpath(folder());
    EXPECT_GT(changesSince(before), 0);
    before = changes;
    write(wanted());
    EXPECT_GT(changesSince(before), 0);
}

TEST_F(AFolderWatch, FollowsNoFolderThatWasMovedAway) {
    QDir().mkpath(folder());
    watch(folder());
    QDir().rename(folder(), folder() + u".old"_s);
    EXPECT_GT(changesSince(0), 0);
    const int before = changes;
    write(folder() + u".old/wanted"_s);
    EXPECT_EQ(changesSince(before), 0);
}

} // namespace
} // namespace tarne::test
