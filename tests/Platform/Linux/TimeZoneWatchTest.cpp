#include "TimeZoneWatch.h"

#include "EventLoop.h"
#include "TestMain.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using namespace test;

class ATimeZoneWatch : public testing::Test {
protected:
    ATimeZoneWatch() {
        QObject::connect(&m_watch, &TimeZoneWatch::changed, &m_watch, [this] { ++m_changes; });
    }
    QByteArray path(const QString &name) const { return m_folder.filePath(name).toLocal8Bit(); }

    QTemporaryDir m_folder;
    TimeZoneWatch m_watch{m_folder.path()};
    int m_changes = 0;
};

TEST_F(ATimeZoneWatch, TellsOfALinkThatTakesTheOldOnesPlace) {
    ASSERT_EQ(::symlink("/usr/share/zoneinfo/Europe/Berlin", path(u"new"_s).constData()), 0);
    ASSERT_EQ(::rename(path(u"new"_s).constData(), path(u"localtime"_s).constData()), 0);
    EXPECT_TRUE(serveUntil([&] { return m_changes > 0; }));
    m_changes = 0;
    ASSERT_EQ(::symlink("/usr/share/zoneinfo/Asia/Tokyo", path(u"new"_s).constData()), 0);
    ASSERT_EQ(::rename(path(u"new"_s).constData(), path(u"localtime"_s).constData()), 0);
    EXPECT_TRUE(serveUntil([&] { return m_changes > 0; }));
}

TEST_F(ATimeZoneWatch, SaysNothingOfOtherFilesOfTheFolder) {
    QFile other(m_folder.filePath(u"hosts"_s));
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    other.close();
    EXPECT_FALSE(serveUntil([&] { return m_changes > 0; }, 100ms));
}

TEST(ATimeZoneWatchOverAFolder, ThatIsNotThereSaysSo) {
    const ExpectedWarning warning(u"a change of the time zone is not noticed"_s);
    const TimeZoneWatch watch(u"/nonexistent"_s);
}

} // namespace
} // namespace tarne::test
