#include "Version.h"

#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

/// What `pattern` captures where it matches first in a file of the sources.
QString firstIn(const QString &path, const QString &pattern) {
    QFile file(QStringLiteral(TARNE_SOURCES "/") + path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    const QRegularExpression expression(pattern, QRegularExpression::MultilineOption);
    return expression.match(QString::fromUtf8(file.readAll())).captured(1);
}

TEST(Version, IsTheNewestReleaseThatIsTold) {
    EXPECT_EQ(
        firstIn(u"packaging/com.tarne.app.metainfo.xml.in"_s, u"<release version=\"([^\"]+)\""_s),
        programVersion());
    EXPECT_EQ(firstIn(u"debian/changelog"_s, u"^tarne \\(([^)]+)\\)"_s), programVersion());
    EXPECT_EQ(firstIn(u"CHANGELOG.md"_s, u"^## \\[(\\d[^\\]]*)\\]"_s), programVersion());
}

} // namespace
} // namespace tarne::test
