#include "StoreTest.h"

#include <SQLiteCpp/Statement.h>

#include <QFile>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class DailyCopiesTest : public StoreTest {
protected:
    /// Starts and ends a run that leaves `text` as preferences.
    void run(const QByteArray &text) {
        open().setObject(preferencesKey, text);
        close();
    }
    /// With what is left of an unfinished one.
    QStringList copies() const { return filesIn(copiesFolder()); }
    bool hasCopy(const QString &date) const {
        return QFile::exists(copiesFolder() + u"/defaults-%1.sqlite"_s.arg(date));
    }
};

TEST_F(DailyCopiesTest, AreMadeAtTheFirstStartOfADayOfWhatTheLastRunLeft) {
    run("first");
    time.advance(day);
    run("second");
    const QString copyOfTheSecondDay = copiesFolder() + u"/defaults-2026-03-03.sqlite"_s;
    const SQLite::Database copy(copyOfTheSecondDay.toStdString());
    SQLite::Statement value(copy, "SELECT CAST(value AS TEXT) FROM defaults");
    ASSERT_TRUE(value.executeStep());
    EXPECT_EQ(value.getColumn(0).getString(), "first");
}

TEST_F(DailyCopiesTest, AreSingleFiles) {
    run("first");
    run("second");
    const QByteArray copy = bytesOf(copiesFolder() + u'/' + copies().constFirst());
    constexpr qsizetype journalModeOffset = 18; // 1: no log beside the file.
    EXPECT_EQ(copy.at(journalModeOffset), 1);
    EXPECT_EQ(copy.at(journalModeOffset + 1), 1);
}

TEST_F(DailyCopiesTest, AreMadeOnceADay) {
    run("first");
    run("second");
    const QByteArray before = bytesOf(copiesFolder() + u'/' + copies().constFirst());
    run("third");
    ASSERT_EQ(copies().size(), 1);
    EXPECT_EQ(bytesOf(copiesFolder() + u'/' + copies().constFirst()), before);
}

TEST_F(DailyCopiesTest, AreMadeInARunThatGoesOnForDays) {
    open();
    for (const QString &date : {u"2026-03-02"_s, u"2026-03-03"_s, u"2026-03-04"_s}) {
        store().setObject(preferencesKey, date.toUtf8());
        store().synchronize();
        runPosted();
        EXPECT_TRUE(eventually([&] { return hasCopy(date); })) << qPrintable(date);
        time.advance(day);
    }
}

TEST_F(DailyCopiesTest, AreNotMadeOfAStoreWithNothingToRestore) {
    open().setObject(timerKey, time.now());
    close();
    EXPECT_EQ(copies(), QStringList());
}

TEST_F(DailyCopiesTest, AreKeptForTheLatestSevenDays) {
    for (int number = 0; number < 10; ++number) {
        run(QByteArray::number(number));
        time.advance(day);
    }
    EXPECT_EQ(copies().size(), 7);
    EXPECT_EQ(copies().constFirst(), u"defaults-2026-03-05.sqlite"_s);
    EXPECT_EQ(copies().constLast(), u"defaults-2026-03-11.sqlite"_s);
}

TEST_F(DailyCopiesTest, OfDaysThatHaveNotComeTakeNoPlaceOfALaterOne) {
    const Date today = time.now();
    time.setWallClock(today + 3650 * 86400.0);
    for (int number = 0; number < 7; ++number) {
        run("ahead");
        time.advance(day);
    }
    time.setWallClock(today);
    run("first");
    time.advance(day);
    run("second");
    EXPECT_EQ(copies().size(), 7);
    EXPECT_TRUE(hasCopy(u"2026-03-02"_s));
    EXPECT_TRUE(hasCopy(u"2026-03-03"_s));
}

TEST_F(DailyCopiesTest, OfDaysThatHaveNotComeAreNotRestoredBeforeOthers) {
    const Date today = time.now();
    time.setWallClock(today + 3650 * 86400.0);
    run("before all");
    run("ahead");
    time.setWallClock(today);
    run("first");
    time.advance(day);
    run("second");
    overwrite(file(), 0, QByteArray(100, '\x5a'));
    const StoreDiagnostics diagnostics;
    EXPECT_EQ(open().dataForKey(preferencesKey), QByteArray("first"));
}

TEST_F(DailyCopiesTest, OfDaysThatHaveNotComeAreRestoredWhereThereAreNoOthers) {
    run("before all");
    run("first");
    time.setWallClock(time.now() - 3650 * 86400.0);
    overwrite(file(), 0, QByteArray(100, '\x5a'));
    const StoreDiagnostics diagnostics;
    EXPECT_EQ(open().dataForKey(preferencesKey), QByteArray("before all"));
}

TEST_F(DailyCopiesTest, LeaveOutACopyThatAKillCutShort) {
    run("first");
    run("second");
    overwrite(copiesFolder() + u"/unfinished.sqlite"_s, 0, "half a copy");
    time.advance(day);
    run("third");
    EXPECT_EQ(copies(),
              (QStringList{u"defaults-2026-03-02.sqlite"_s, u"defaults-2026-03-03.sqlite"_s}));
}

TEST_F(DailyCopiesTest, AreNotMadeAtAMomentOutsideTheCalendar) {
    time.setWallClock(Date::fromReferenceSeconds(1e300));
    run("first");
    EXPECT_EQ(copies(), QStringList());
    EXPECT_EQ(open().dataForKey(preferencesKey), QByteArray("first"));
}

TEST_F(DailyCopiesTest, AreNotMadeWhenTheClockLeavesTheCalendarInARun) {
    run("first");
    open();
    time.setWallClock(Date::fromReferenceSeconds(1e300));
    for (const char *text : {"second", "third"}) {
        store().setObject(preferencesKey, QByteArray(text));
        store().synchronize();
        runPosted();
        ASSERT_TRUE(comesToHold(preferencesKey, text));
    }
    close();
    EXPECT_EQ(copies(), QStringList{u"defaults-2026-03-02.sqlite"_s});
}

} // namespace
} // namespace tarne::test
