#include "StoreTest.h"

#include <SQLiteCpp/Statement.h>

#include <QDir>
#include <QFileInfo>

#include <ctime>
#include <limits>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

class StoredUserDefaultsTest : public StoreTest {};

struct StoredCase {
    const char *name;
    DefaultsValue value;
    const char *type;
    const char *storageClass;
};

class StoredTypes : public StoreTest, public testing::WithParamInterface<StoredCase> {};

TEST_P(StoredTypes, ComeBackBitForBitAfterARestart) {
    open().setObject(key, GetParam().value);
    const auto back = reopen().objectForKey(key);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->index(), GetParam().value.index());
    EXPECT_TRUE(isSameValue(*back, GetParam().value));
}

TEST_P(StoredTypes, StandInTheTableAsTold) {
    open().setObject(key, GetParam().value);
    close();
    EXPECT_EQ(read("SELECT type FROM defaults"), GetParam().type);
    EXPECT_EQ(read("SELECT typeof(value) FROM defaults"), GetParam().storageClass);
    EXPECT_EQ(read("SELECT sum IS NOT NULL FROM defaults"), "1");
}

const double infinity = std::numeric_limits<double>::infinity();
const double notANumber = std::numeric_limits<double>::quiet_NaN();

INSTANTIATE_TEST_SUITE_P(
    Values, StoredTypes,
    testing::Values(
        StoredCase{"True", true, "boolean", "integer"},
        StoredCase{"False", false, "boolean", "integer"},
        StoredCase{"Integer", qint64{-7}, "integer", "integer"},
        StoredCase{"SmallestInteger", std::numeric_limits<qint64>::min(), "integer", "integer"},
        StoredCase{"Double", 0.1, "double", "real"},
        StoredCase{"WholeDouble", 1500.0, "double", "real"},
        StoredCase{"NegativeZero", -0.0, "double", "real"},
        StoredCase{"Denormal", 5e-324, "double", "real"},
        StoredCase{"Infinity", infinity, "double", "real"},
        StoredCase{"NegativeInfinity", -infinity, "double", "real"},
        StoredCase{"NotANumber", notANumber, "double", "text"},
        StoredCase{"NegativeNotANumber", -notANumber, "double", "text"},
        StoredCase{"Text", u"Write report, Review"_s, "text", "text"},
        StoredCase{"EmptyText", QString(), "text", "text"},
        StoredCase{"TextWithZero", u"a\0b"_s, "text", "text"},
        StoredCase{"RightToLeftAndEmoji", u"כתיבה \U0001F469‍\U0001F4BB"_s, "text", "text"},
        StoredCase{"LongText", QString(1 << 20, u'x'), "text", "text"},
        StoredCase{"Date", Date::fromReferenceSeconds(794145600.1234567), "date", "real"},
        StoredCase{"WholeDate", Date::fromReferenceSeconds(0.0), "date", "real"},
        StoredCase{"DateNotANumber", Date::fromReferenceSeconds(notANumber), "date", "text"},
        StoredCase{"Data", QByteArray("\0\xff{}", 4), "data", "blob"},
        StoredCase{"EmptyData", QByteArray(), "data", "blob"},
        StoredCase{"DataOf50Megabytes", QByteArray(50 << 20, 'x'), "data", "blob"}),
    [](const auto &test) { return std::string(test.param.name); });

TEST_F(StoredUserDefaultsTest, LiesInTheUsersDataFolder) {
    EXPECT_EQ(StoredUserDefaults::standardFolder(),
              QString::fromLocal8Bit(qgetenv("XDG_DATA_HOME")) + u"/com.tarne.app"_s);
}

TEST_F(StoredUserDefaultsTest, CanBeEnteredByItsUserOnly) {
    open().setObject(key, true);
    store().setObject(preferencesKey, QByteArray("{}"));
    store().synchronize();
    runPosted();
    ASSERT_TRUE(comesToHold(key, "1"));
    const auto permissions = [](const QString &path) { return QFileInfo(path).permissions(); };
    const auto privateFile =
        QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    EXPECT_EQ(permissions(folder()), privateFile | QFile::ExeOwner | QFile::ExeUser);
    for (const QString &name : filesIn(folder()))
        EXPECT_EQ(permissions(folder() + u'/' + name), privateFile) << qPrintable(name);
    const QString copy = copiesFolder() + u"/defaults-2026-03-02.sqlite"_s;
    ASSERT_TRUE(eventually([&] { return QFile::exists(copy); }));
    EXPECT_EQ(permissions(copy), privateFile);
}

TEST_F(StoredUserDefaultsTest, TakesAwayTheAccessThatOthersHad) {
    open();
    close();
    const auto everybody = QFile::Permissions(0x7777);
    ASSERT_TRUE(QFile::setPermissions(folder(), everybody));
    ASSERT_TRUE(QFile::setPermissions(file(), everybody));
    open();
    EXPECT_FALSE(QFileInfo(folder()).permission(QFile::ReadOther));
    EXPECT_FALSE(QFileInfo(folder()).permission(QFile::ReadGroup));
    EXPECT_FALSE(QFileInfo(file()).permission(QFile::ReadOther));
    EXPECT_FALSE(QFileInfo(file()).permission(QFile::ReadGroup));
}

TEST_F(StoredUserDefaultsTest, ReadsBackAtOnceWhatWasWritten) {
    open().setObject(key, 2.5);
    EXPECT_EQ(store().doubleForKey(key), 2.5);
    store().removeObjectForKey(key);
    EXPECT_EQ(store().objectForKey(key), std::nullopt);
}

TEST_F(StoredUserDefaultsTest, CoercesAPlantedInteger) {
    open();
    close();
    execute("INSERT INTO defaults (key, type, value) VALUES ('Key', 'integer', 1)");
    EXPECT_TRUE(open().boolForKey(key));
}

TEST_F(StoredUserDefaultsTest, CommitsSoonAfterSynchronize) {
    open().setObject(key, u"new"_s);
    store().synchronize();
    runPosted();
    EXPECT_TRUE(comesToHold(key, "new"));
}

TEST_F(StoredUserDefaultsTest, CommitsWithinASecondWithoutSynchronize) {
    open().setObject(key, u"new"_s);
    time.advance(RunLoop::Seconds(0.3)); // The rest of the second belongs to the disk.
    EXPECT_TRUE(comesToHold(key, "new"));
}

TEST_F(StoredUserDefaultsTest, CommitsAtExit) {
    open().setObject(key, u"new"_s);
    close();
    EXPECT_EQ(stored(key), "new");
}

TEST_F(StoredUserDefaultsTest, RemovesFromTheFileWhatWasRemoved) {
    open().setObject(key, true);
    reopen().removeObjectForKey(key);
    close();
    EXPECT_EQ(read("SELECT count(*) FROM defaults"), "0");
}

TEST_F(StoredUserDefaultsTest, HandsOverAWholeEventEvenWhenSynchronizeStandsInItsMiddle) {
    open();
    store().setObject(u"First"_s, qint64{1});
    store().synchronize();
    store().setObject(u"Second"_s, qint64{1});
    runPosted();
    ASSERT_TRUE(comesToHold(u"First"_s, "1"));
    EXPECT_EQ(stored(u"Second"_s), "1");
}

TEST_F(StoredUserDefaultsTest, ARunLeavesNoFileOfTheStoreOpen) {
    open().setObject(key, true);
    close();
    for (const QFileInfo &descriptor :
         QDir(u"/proc/self/fd"_s).entryInfoList(QDir::Files | QDir::System))
        EXPECT_FALSE(descriptor.symLinkTarget().startsWith(folder()));
}

TEST_F(StoredUserDefaultsTest, WakesTheLoopOnceForAChangeAndOnceForItsSynchronizing) {
    open();
    store().synchronize();
    EXPECT_EQ(time.pendingBlockCount(), 0u) << "there is nothing to hand over";
    store().setObject(key, true);
    for (int times = 0; times < 3; ++times)
        store().synchronize();
    EXPECT_EQ(time.pendingBlockCount(), 2u);
}

TEST_F(StoredUserDefaultsTest, KeepsTheOrderOfWritesInABatch) {
    open();
    for (const QString &name : {u"C"_s, u"A"_s, u"B"_s, u"C"_s})
        store().setObject(name, store().doubleForKey(name) + 1);
    close();
    EXPECT_EQ(read("SELECT group_concat(key, '') FROM (SELECT key FROM defaults ORDER BY rowid)"),
              "ABC");
}

/// Counts the commits that another connection sees while the test's body runs.
class CommitCounter : public StoredUserDefaultsTest {
protected:
    /// Lets everything that is due be written, in a run of its own.
    template <class Body>
    bool writesAnything(const Body &body) {
        open();
        const SQLite::Database observer(file().toStdString(), SQLite::OPEN_READONLY);
        const auto version = [&] {
            SQLite::Statement statement(observer, "PRAGMA data_version");
            statement.executeStep();
            return statement.getColumn(0).getInt();
        };
        const int before = version();
        body();
        time.advance(RunLoop::Seconds(10));
        close();
        return version() != before;
    }
};

TEST_F(CommitCounter, NotesAChangeAsAWrite) {
    EXPECT_TRUE(writesAnything([&] { store().setObject(key, u"new"_s); }));
}

TEST_F(CommitCounter, AWriteThatChangesNothingIsNoWrite) {
    const QByteArray data("{}");
    open().setObject(key, data);
    store().setObject(u"Double"_s, notANumber);
    EXPECT_FALSE(writesAnything([&] {
        store().setObject(key, QByteArray("{}"));
        store().setObject(u"Double"_s, -notANumber);
        store().removeObjectForKey(u"Absent"_s);
        store().synchronize();
    }));
}

TEST_F(CommitCounter, AChangeThatIsTakenBackBeforeTheHandOverIsNoWrite) {
    open().setObject(key, u"old"_s);
    EXPECT_FALSE(writesAnything([&] {
        store().setObject(key, u"new"_s);
        store().synchronize();
        store().setObject(key, u"old"_s);
        store().setObject(u"Other"_s, true);
        store().removeObjectForKey(u"Other"_s);
    }));
}

TEST_F(CommitCounter, WhatIsTakenBackRightAfterSynchronizeIsSeenByNobody) {
    open().setObject(key, qint64{1});
    EXPECT_FALSE(writesAnything([&] {
        store().setObject(key, qint64{0});
        store().synchronize();
        time.advance(RunLoop::Seconds(0.001));
        store().setObject(key, qint64{1});
        store().synchronize();
    }));
}

TEST_F(CommitCounter, AnIdleProgramWritesNothing) {
    open().setObject(key, u"old"_s);
    EXPECT_FALSE(writesAnything([&] {
        for (int second = 0; second < 100; ++second) {
            store().synchronize();
            time.advance(RunLoop::Seconds(1));
        }
    }));
}

TEST_F(StoredUserDefaultsTest, AnIdleProgramTouchesNoFile) {
    open().setObject(key, u"value"_s);
    store().synchronize();
    runPosted();
    ASSERT_TRUE(comesToHold(key, "value"));
    const auto state = [&] {
        QByteArray all;
        for (const QString &name : filesIn(folder()))
            all += name.toUtf8() + bytesOf(folder() + u'/' + name);
        return all;
    };
    const QByteArray before = state();
    for (int second = 0; second < 100; ++second) {
        store().setObject(key, u"value"_s);
        store().synchronize();
        time.advance(RunLoop::Seconds(1));
    }
    EXPECT_EQ(state(), before);
}

TEST_F(StoredUserDefaultsTest, MergesALongLogIntoTheFile) {
    const auto sizeOf = [](const QString &path) { return QFileInfo(path).size(); };
    constexpr qint64 megabyte = 1 << 20;
    open().setObject(historyKey, QByteArray(12 * megabyte, 'x'));
    store().synchronize();
    runPosted();
    EXPECT_TRUE(eventually([&] { return sizeOf(file()) > 12 * megabyte; }));
    // The log begins anew with the next commit, and is cut back then.
    store().setObject(key, true);
    store().synchronize();
    runPosted();
    EXPECT_TRUE(eventually([&] { return sizeOf(file() + u"-wal"_s) <= 4 * megabyte; }));
}

TEST_F(StoredUserDefaultsTest, AChangeOfTypeIsAChange) {
    open().setObject(key, qint64{1});
    store().setObject(key, true);
    EXPECT_EQ(reopen().objectForKey(key), DefaultsValue(true));
    store().setObject(key, 1.0);
    EXPECT_EQ(reopen().objectForKey(key), DefaultsValue(1.0));
}

TEST_F(StoredUserDefaultsTest, DoesNotSeeWhatAnotherProgramWritesMeanwhile) {
    open().setObject(key, u"ours"_s);
    store().synchronize();
    runPosted();
    ASSERT_TRUE(comesToHold(key, "ours"));
    execute("UPDATE defaults SET value = 'theirs'");
    EXPECT_EQ(store().stringForKey(key), u"ours"_s);
    EXPECT_EQ(reopen().stringForKey(key), u"theirs"_s);
}

TEST_F(StoredUserDefaultsTest, HoldsNoValueOfItsOwnOnAFirstStart) {
    open();
    EXPECT_EQ(store().objectForKey(preferencesKey), std::nullopt);
    close();
    EXPECT_EQ(read("SELECT count(*) FROM defaults"), "0");
    EXPECT_EQ(read("PRAGMA user_version"), "1");
    EXPECT_EQ(read("PRAGMA journal_mode"), "wal");
}

TEST_F(StoredUserDefaultsTest, ABlockThatOutlivesTheStoreDoesNothing) {
    open().setObject(key, true);
    store().synchronize();
    close();
    time.advance(RunLoop::Seconds(5));
    EXPECT_EQ(stored(key), "1");
}

TEST_F(StoredUserDefaultsTest, AKeyMayHoldQuotesAndEmoji) {
    const QString odd = u"it's \"\U0001F4F1\"; --"_s;
    open().setObject(odd, true);
    EXPECT_TRUE(reopen().boolForKey(odd));
}

TEST_F(StoredUserDefaultsTest, RewritingALargeHistoryCostsTheCallerLessThanAFrame) {
    // The time that a processor works, so that a busy machine fails no test.
    const auto spentMilliseconds = [] {
        timespec spent{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &spent);
        return static_cast<double>(spent.tv_sec) * 1e3 + static_cast<double>(spent.tv_nsec) * 1e-6;
    };
    QByteArray history(12 << 20, 'x');
    open().setObject(historyKey, history);
    runPosted();
    history.detach();
    history.back() = 'y';
    const double before = spentMilliseconds();
    store().setObject(historyKey, history);
    store().synchronize();
    runPosted();
    EXPECT_LT(spentMilliseconds() - before, 16.7);
}

} // namespace
} // namespace tarne::test
