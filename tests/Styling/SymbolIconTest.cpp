#include "SymbolIcon.h"

#include "SymbolTable.h"

#include <QFile>
#include <QSet>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

TEST(SymbolTable, EveryOutlineIsEmbedded) {
    for (const SymbolOutline &entry : symbolTable()) {
        for (const QLatin1StringView file : {entry.file, entry.enclosing, entry.sign}) {
            if (!file.isEmpty()) {
                EXPECT_TRUE(QFile::exists(u":/tarne/symbols/"_s + file + u".svg"_s)) << file.data();
            }
        }
    }
}

TEST(SymbolTable, NamesEachSymbolOnce) {
    const QStringList names = SymbolIcon::symbols();
    EXPECT_EQ(QSet<QString>(names.begin(), names.end()).size(), names.size());
}

TEST(SymbolTable, HasEverySymbolThatTheScreensName) {
    const QStringList named{u"timer"_s,
                            u"chart.bar"_s,
                            u"book.closed"_s,
                            u"gear"_s,
                            u"play.fill"_s,
                            u"pause.fill"_s,
                            u"stop.fill"_s,
                            u"xmark.circle.fill"_s,
                            u"pencil"_s,
                            u"arrow.right"_s,
                            u"command"_s,
                            u"return"_s,
                            u"checkmark"_s,
                            u"square.and.arrow.up"_s,
                            u"chart.bar.fill"_s,
                            u"magnifyingglass"_s,
                            u"lightbulb.fill"_s,
                            u"heart.fill"_s,
                            u"checkmark.circle.fill"_s,
                            u"minus.circle.fill"_s,
                            u"circle"_s,
                            u"exclamationmark.triangle.fill"_s,
                            u"note.text"_s,
                            u"chevron.up"_s,
                            u"chevron.down"_s,
                            u"plus"_s,
                            u"xmark"_s,
                            u"calendar"_s,
                            u"calendar.badge.clock"_s,
                            u"clock.arrow.circlepath"_s,
                            u"calendar.badge.plus"_s,
                            u"bell.fill"_s,
                            u"trash"_s,
                            u"clock"_s,
                            u"target"_s,
                            u"flame.fill"_s,
                            u"trophy.fill"_s,
                            u"safari"_s,
                            u"brain.head.profile"_s,
                            u"eye"_s,
                            u"eye.slash"_s,
                            u"link"_s};
    for (const QString &symbol : named)
        EXPECT_TRUE(symbolOutline(symbol)) << qPrintable(symbol);
}

TEST(SymbolTable, HasNoLineForAnUnknownName) {
    EXPECT_EQ(symbolOutline(u"nothing.at.all"), nullptr);
}

} // namespace
} // namespace tarne::test
