#include "ExecutableBundle.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

TEST(ExecutableBundle, IsTheFolderOfTheProgram) {
    EXPECT_EQ(ExecutableBundle().path(), QCoreApplication::applicationDirPath());
}

TEST(ExecutableBundle, ItsResourcesLieInLibTarneBesideThatFolder) {
    const QDir resources(QCoreApplication::applicationDirPath() + u"/../lib/tarne"_s);
    QFile file(resources.filePath(u"bundle-test-resource"_s));
    if (!resources.mkpath(u"."_s) || !file.open(QIODevice::WriteOnly))
        GTEST_SKIP() << "The build belongs to another user.";
    EXPECT_EQ(ExecutableBundle().pathForResource(u"bundle-test-resource"_s),
              QDir::cleanPath(file.fileName()));
    file.remove();
    EXPECT_EQ(ExecutableBundle().pathForResource(u"bundle-test-resource"_s), std::nullopt);
}

TEST(ExecutableBundle, KnowsTheWorkingDirectoryAndItsFiles) {
    EXPECT_EQ(ExecutableBundle().currentDirectoryPath(), QDir::currentPath());
    EXPECT_TRUE(ExecutableBundle().fileExists(u"/proc/self/exe"_s));
    EXPECT_FALSE(ExecutableBundle().fileExists(u"/nonexistent"_s));
}

} // namespace
} // namespace tarne::test
