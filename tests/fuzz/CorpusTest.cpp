#include "FuzzTargets.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::fuzz {

// GoogleTest prints a parameter by its first bytes otherwise.
void PrintTo(const Target &target, std::ostream *out) {
    *out << target.name;
}

namespace {

QFileInfoList seedsOf(const char *target) {
    return QDir(QStringLiteral(TARNE_CORPUS) + u'/' + QLatin1StringView(target))
        .entryInfoList(QDir::Files);
}

QByteArray contentOf(const QFileInfo &seed) {
    QFile file(seed.filePath());
    if (!file.open(QIODevice::ReadOnly))
        ADD_FAILURE() << qPrintable(seed.filePath());
    return file.readAll();
}

class FuzzTarget : public testing::TestWithParam<Target> {};

} // namespace

TEST_P(FuzzTarget, HoldsForEverySeed) {
    const QFileInfoList seeds = seedsOf(GetParam().name);
    EXPECT_GE(seeds.size(), 4);
    for (const QFileInfo &seed : seeds) {
        SCOPED_TRACE(qPrintable(seed.fileName()));
        EXPECT_NO_THROW(GetParam().run(contentOf(seed)));
    }
}

TEST_P(FuzzTarget, HoldsForSeedsThatAreCutOffOrChanged) {
    for (const QFileInfo &seed : seedsOf(GetParam().name)) {
        const QByteArray content = contentOf(seed);
        const qsizetype step = 1 + content.size() / 24;
        for (qsizetype at = 0; at < content.size(); at += step) {
            SCOPED_TRACE(qPrintable(seed.fileName() + u" at "_s + QString::number(at)));
            EXPECT_NO_THROW(GetParam().run(QByteArrayView(content).first(at)));
            QByteArray changed = content;
            changed[at] = static_cast<char>(changed[at] ^ 0x15);
            EXPECT_NO_THROW(GetParam().run(changed));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EveryReader, FuzzTarget, testing::ValuesIn(targets),
                         [](const auto &test) { return std::string(test.param.name); });

} // namespace tarne::fuzz
