#include "StoreTest.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace tarne::test {
namespace {

const QByteArray oldPreferences("{\"lastGoal\":\"old\"}");
const QByteArray newPreferences("{\"lastGoal\":\"new\"}");
const QByteArray oldHistory(20'000, 'o');
const QByteArray newHistory(20'000, 'n');
const QByteArray oldGoals("[\"old\"]");

/// A store of two days: what the first left is in the second day's copy.
class DefaultsDamage : public StoreTest {
protected:
    DefaultsDamage() {
        open().setObject(preferencesKey, oldPreferences);
        store().setObject(historyKey, oldHistory);
        store().setObject(goalsKey, oldGoals);
        store().setObject(timerKey, time.now());
        close();
        time.advance(day);
        open();
        store().setObject(preferencesKey, newPreferences);
        store().setObject(historyKey, newHistory);
        close();
    }

    void expectOnlyTheRestorableKeysOfTheCopy() {
        EXPECT_EQ(store().dataForKey(preferencesKey), oldPreferences);
        EXPECT_EQ(store().dataForKey(historyKey), oldHistory);
        EXPECT_EQ(store().dataForKey(goalsKey), oldGoals);
        EXPECT_EQ(store().objectForKey(timerKey), std::nullopt);
    }

    void expectOneLineThatSays(const std::string &part) {
        ASSERT_EQ(StoreDiagnostics::lines().size(), 1);
        EXPECT_THAT(StoreDiagnostics::lines().constFirst().toStdString(), HasSubstr(part));
    }

    StoreDiagnostics diagnostics;
};

TEST_F(DefaultsDamage, InTheHeaderRestoresFromTheCopy) {
    overwrite(file(), 0, QByteArray(100, '\x5a'));
    open();
    expectOnlyTheRestorableKeysOfTheCopy();
    expectOneLineThatSays("not a database");
}

TEST_F(DefaultsDamage, InAPageRestoresFromTheCopy) {
    overwrite(file(), 8192, QByteArray(8192, '\xff'));
    open();
    expectOnlyTheRestorableKeysOfTheCopy();
    expectOneLineThatSays("malformed");
}

TEST_F(DefaultsDamage, InAValueRestoresFromTheCopy) {
    corrupt("\"lastGoal\":\"new\"", "\"lastGoal\":\"nfw\"");
    open();
    expectOnlyTheRestorableKeysOfTheCopy();
    expectOneLineThatSays("the value of UserPreferences is not what was written");
}

TEST_F(DefaultsDamage, InAKeyRestoresFromTheCopy) {
    const QByteArray content = bytesOf(file());
    overwrite(file(), content.lastIndexOf("SessionHistory"), "TessionHistory");
    open();
    expectOnlyTheRestorableKeysOfTheCopy();
    expectOneLineThatSays("keys and their index differ");
}

TEST_F(DefaultsDamage, InTheVersionRestoresFromTheCopy) {
    execute("PRAGMA user_version = -2");
    open();
    expectOnlyTheRestorableKeysOfTheCopy();
    expectOneLineThatSays("its version is -2");
}

TEST_F(DefaultsDamage, ByTruncationRestoresFromTheCopy) {
    ASSERT_TRUE(QFile::resize(file(), QFile(file()).size() / 2));
    open();
    expectOnlyTheRestorableKeysOfTheCopy();
    expectOneLineThatSays("the defaults store is damaged");
}

TEST_F(DefaultsDamage, ByTruncationToNothingRestoresFromTheCopy) {
    ASSERT_TRUE(QFile::resize(file(), 0));
    open();
    expectOnlyTheRestorableKeysOfTheCopy();
    expectOneLineThatSays("it is empty");
}

TEST_F(DefaultsDamage, ByDeletionOfTheFileRestoresFromTheCopy) {
    ASSERT_TRUE(QFile::remove(file()));
    open();
    expectOnlyTheRestorableKeysOfTheCopy();
    expectOneLineThatSays("it is empty");
}

TEST_F(DefaultsDamage, OfAFileThatIsNoDatabaseRestoresFromTheCopy) {
    ASSERT_TRUE(QFile::resize(file(), 0));
    overwrite(file(), 0,
              "This is a text, and a text of more than a hundred bytes at that, which "
              "SQLite looks at, and refuses.");
    open();
    expectOnlyTheRestorableKeysOfTheCopy();
    expectOneLineThatSays("not a database");
}

TEST_F(DefaultsDamage, ThatTookTheTableAwayRestoresFromTheCopy) {
    execute("DROP TABLE defaults");
    open();
    expectOnlyTheRestorableKeysOfTheCopy();
    expectOneLineThatSays("no such table");
}

TEST_F(DefaultsDamage, OfAValueUnderAKeyThatIsNotRestoredIsDamageToo) {
    execute("UPDATE defaults SET value = 0.5, sum = 1 WHERE key = 'TimerStartTime'");
    open();
    expectOnlyTheRestorableKeysOfTheCopy();
}

TEST_F(DefaultsDamage, KeepsTheDamagedFileUnderANewName) {
    overwrite(file(), 0, QByteArray(100, '\x5a'));
    const QByteArray damaged = bytesOf(file());
    open();
    ASSERT_EQ(damagedFiles(), QStringList{u"defaults.damaged-20260303-120000.sqlite"_s});
    EXPECT_EQ(bytesOf(folder() + u'/' + damagedFiles().constFirst()), damaged);
    expectOneLineThatSays("set aside as defaults.damaged-20260303-120000.sqlite; "
                          "ScheduledGoals, SessionHistory, UserPreferences restored from "
                          "defaults-2026-03-03.sqlite");
}

TEST_F(DefaultsDamage, KeepsTheLogOfTheDamagedFile) {
    const QString log = file() + u"-wal"_s;
    open().setObject(preferencesKey, QByteArray("{\"lastGoal\":\"newest\"}"));
    store().synchronize();
    runPosted();
    ASSERT_TRUE(comesToHold(preferencesKey, "{\"lastGoal\":\"newest\"}"));
    QByteArray fileOfAKilledRun = bytesOf(file());
    const QByteArray logOfAKilledRun = bytesOf(log);
    close();
    fileOfAKilledRun[fileOfAKilledRun.indexOf(QByteArray(4000, 'n')) + 10] = 'm';
    overwrite(file(), 0, fileOfAKilledRun);
    overwrite(log, 0, logOfAKilledRun);
    open();
    expectOneLineThatSays("the value of SessionHistory is not what was written");
    const QString aside = folder() + u'/' + damagedFiles().constFirst();
    EXPECT_TRUE(bytesOf(aside) == fileOfAKilledRun);
    EXPECT_TRUE(bytesOf(aside + u"-wal"_s) == logOfAKilledRun);
}

TEST_F(DefaultsDamage, IsNamedByTheNumberItselfWhereNoCalendarReaches) {
    constexpr double secondsFrom1970To2001 = 978307200;
    for (const double seconds : {1e11 - 1, 1e11}) {
        close();
        time.setWallClock(Date::fromReferenceSeconds(seconds - secondsFrom1970To2001));
        overwrite(file(), 0, QByteArray(100, '\x5a'));
        open();
    }
    EXPECT_EQ(damagedFiles(), (QStringList{u"defaults.damaged-1e+11.sqlite"_s,
                                           u"defaults.damaged-51381116-094639.sqlite"_s}));
}

TEST_F(DefaultsDamage, TwiceInASecondKeepsBothFiles) {
    for (int times = 0; times < 2; ++times) {
        close();
        overwrite(file(), 0, QByteArray(100, '\x5a'));
        open();
    }
    EXPECT_EQ(damagedFiles(), (QStringList{u"defaults.damaged-20260303-120000-2.sqlite"_s,
                                           u"defaults.damaged-20260303-120000.sqlite"_s}));
}

TEST_F(DefaultsDamage, LeavesAStoreThatSavesAndOpensAgain) {
    overwrite(file(), 0, QByteArray(100, '\x5a'));
    open().setObject(preferencesKey, QByteArray("{\"lastGoal\":\"after\"}"));
    reopen();
    EXPECT_EQ(store().dataForKey(preferencesKey), QByteArray("{\"lastGoal\":\"after\"}"));
    EXPECT_EQ(store().dataForKey(historyKey), oldHistory);
    EXPECT_EQ(StoreDiagnostics::lines().size(), 1);
}

TEST_F(DefaultsDamage, OfTheLatestCopyTooRestoresFromTheOneBefore) {
    time.advance(day);
    open(); // Copies what the second day left.
    close();
    overwrite(copiesFolder() + u"/defaults-2026-03-04.sqlite"_s, 8192, QByteArray(8192, '\xff'));
    overwrite(file(), 0, QByteArray(100, '\x5a'));
    open();
    expectOnlyTheRestorableKeysOfTheCopy();
    expectOneLineThatSays("restored from defaults-2026-03-03.sqlite");
}

TEST_F(DefaultsDamage, WithoutAnyCopyStartsEmpty) {
    ASSERT_TRUE(QDir(copiesFolder()).removeRecursively());
    overwrite(file(), 0, QByteArray(100, '\x5a'));
    open();
    EXPECT_EQ(store().objectForKey(historyKey), std::nullopt);
    expectOneLineThatSays("there is no good copy to restore from");
    EXPECT_EQ(damagedFiles().size(), 1);
}

TEST_F(DefaultsDamage, NoticedWhileRunningLosesNothing) {
    open();
    execute("DROP TABLE defaults");
    store().setObject(goalsKey, QByteArray("[\"newest\"]"));
    reopen();
    EXPECT_EQ(store().dataForKey(historyKey), newHistory);
    EXPECT_EQ(store().dataForKey(goalsKey), QByteArray("[\"newest\"]"));
    EXPECT_NE(store().objectForKey(timerKey), std::nullopt);
    EXPECT_EQ(damagedFiles().size(), 1);
    expectOneLineThatSays("set aside as");
}

TEST_F(DefaultsDamage, IsNotWhatAnotherProgramWrites) {
    execute("UPDATE defaults SET value = X'7b7d' WHERE key = 'UserPreferences';"
            "INSERT OR REPLACE INTO defaults (key, type, value) VALUES ('ScheduledGoals', 'data', "
            "X'5b5d');"
            "INSERT INTO defaults (key, type, value) VALUES ('Other', 'double', 1)");
    open();
    EXPECT_EQ(store().dataForKey(preferencesKey), QByteArray("{}"));
    EXPECT_EQ(store().dataForKey(goalsKey), QByteArray("[]"));
    EXPECT_EQ(store().doubleForKey(u"Other"_s), 1.0);
    EXPECT_EQ(store().dataForKey(historyKey), newHistory);
    EXPECT_EQ(StoreDiagnostics::lines(), QStringList());
}

TEST_F(DefaultsDamage, IsWatchedForAgainWhenWeWriteOverAnotherProgramsValue) {
    const auto sums = "SELECT count(*) FROM defaults WHERE key = 'UserPreferences' AND sum NOTNULL";
    execute("UPDATE defaults SET value = X'7b7d' WHERE key = 'UserPreferences'");
    EXPECT_EQ(read(sums), "0");
    open().setObject(preferencesKey, newPreferences);
    close();
    EXPECT_EQ(read(sums), "1");
}

TEST_F(DefaultsDamage, IsNotAnotherProgramsChangeOfStorageClassAlone) {
    execute("INSERT INTO defaults (key, type, value) VALUES ('Other', 'double', 1)");
    open().setObject(u"Other"_s, 2.0);
    close();
    execute("UPDATE defaults SET value = 2 WHERE key = 'Other'");
    EXPECT_EQ(open().doubleForKey(u"Other"_s), 2.0);
    EXPECT_EQ(StoreDiagnostics::lines(), QStringList());
}

TEST_F(DefaultsDamage, IsNotADocumentThatDoesNotDecode) {
    open().setObject(historyKey, QByteArray("[{\"truncated"));
    EXPECT_EQ(reopen().dataForKey(historyKey), QByteArray("[{\"truncated"));
    EXPECT_EQ(StoreDiagnostics::lines(), QStringList());
}

TEST_F(DefaultsDamage, IsNotAValueThatDoesNotFitItsType) {
    execute("UPDATE defaults SET value = 'noon' WHERE key = 'TimerStartTime'");
    open();
    EXPECT_EQ(store().objectForKey(timerKey), std::nullopt);
    EXPECT_EQ(store().dataForKey(historyKey), newHistory);
    expectOneLineThatSays("ignoring TimerStartTime");
    close();
    EXPECT_EQ(stored(timerKey), "noon");
}

} // namespace
} // namespace tarne::test
