#include "StoredSession.h"

#include <SQLiteCpp/Database.h>

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

/// A store's file as another hand writes it.
class AStoresFile : public testing::Test {
protected:
    void execute(const std::string &statements) {
        SQLite::Database database(file(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        database.exec(statements);
    }
    void make() {
        execute(
            "PRAGMA journal_mode = WAL; PRAGMA user_version = 1;"
            "CREATE TABLE defaults (key TEXT PRIMARY KEY, type TEXT NOT NULL, value ANY NOT NULL,"
            " sum INTEGER) STRICT;");
    }
    /// `value` in SQL.
    void put(const std::string &key, const std::string &value) {
        execute("INSERT OR REPLACE INTO defaults VALUES ('" + key + "', 'text', " + value +
                ", NULL)");
    }
    void putSession() {
        put("SessionActive", "1");
        put("SessionGoals", "'Write'");
        put("SessionId", "'A'");
        put("TimeRemaining", "60.5");
        put("SessionDuration", "1500.0");
        put("SessionProgress", "0.04");
        put("LastUpdate", "1763800000.25");
    }

    std::string file() const { return m_folder.filePath(u"defaults.sqlite"_s).toStdString(); }
    std::string folder() const { return m_folder.path().toStdString(); }

private:
    QTemporaryDir m_folder;
};

TEST_F(AStoresFile, TellsTheSessionKeys) {
    make();
    putSession();
    const auto read = readStoredSession(file());
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->isActive);
    EXPECT_EQ(read->id, "A");
    EXPECT_EQ(read->goals, "Write");
    EXPECT_EQ(read->timeRemaining, 60.5);
    EXPECT_EQ(read->duration, 1500.0);
    EXPECT_EQ(read->lastUpdate, 1763800000.25);
}

TEST_F(AStoresFile, WithoutAnySessionKeyHasNoSession) {
    make();
    put("UserPreferences", "x'00'");
    const auto read = readStoredSession(file());
    ASSERT_TRUE(read);
    EXPECT_FALSE(read->isActive);
}

TEST_F(AStoresFile, ThatIsAbsentEmptyOrNoDatabaseIsNoStore) {
    EXPECT_FALSE(readStoredSession(file()));
    QFile bare(QString::fromStdString(file()));
    ASSERT_TRUE(bare.open(QIODevice::WriteOnly));
    bare.close();
    EXPECT_FALSE(readStoredSession(file()));
    ASSERT_TRUE(bare.open(QIODevice::WriteOnly));
    bare.write(QByteArray(5000, 'x'));
    bare.close();
    EXPECT_FALSE(readStoredSession(file()));
}

TEST_F(AStoresFile, OfANewerVersionIsNotRead) {
    make();
    putSession();
    execute("PRAGMA user_version = 2");
    EXPECT_FALSE(readStoredSession(file()));
}

TEST_F(AStoresFile, WithValuesThatNoSessionHasIsNotRead) {
    const std::pair<const char *, const char *> values[]{{"SessionActive", "'1'"},
                                                         {"SessionActive", "1.0"},
                                                         {"SessionGoals", "7"},
                                                         {"SessionGoals", "x'41'"},
                                                         {"SessionGoals", "CAST(x'ff' AS TEXT)"},
                                                         {"SessionId", "1.5"},
                                                         {"TimeRemaining", "'nan'"},
                                                         {"TimeRemaining", "9e999"},
                                                         {"SessionDuration", "'x'"},
                                                         {"LastUpdate", "-9e999"},
                                                         {"LastUpdate", "7"},
                                                         {"TimeRemaining", "1e300"}};
    make();
    for (const auto &[key, value] : values) {
        putSession();
        put(key, value);
        EXPECT_FALSE(readStoredSession(file())) << key << ' ' << value;
    }
    putSession();
    EXPECT_TRUE(readStoredSession(file()));
}

TEST_F(AStoresFile, WithAGoalOfAMegabyteTellsItsBeginning) {
    make();
    putSession();
    put("SessionGoals", "replace(hex(zeroblob(500000)), '0', 'g')");
    const auto read = readStoredSession(file());
    ASSERT_TRUE(read);
    EXPECT_EQ(read->goals, std::string(10'000, 'g'));
}

TEST_F(AStoresFile, IsNotChangedByReadings) {
    make();
    putSession();
    SQLite::Database writer(file(), SQLite::OPEN_READWRITE);
    writer.exec("UPDATE defaults SET value = 'Rest' WHERE key = 'SessionGoals'");
    struct stat before {};
    ASSERT_EQ(::stat(file().c_str(), &before), 0);
    for (int reading = 0; reading < 100; ++reading)
        EXPECT_EQ(readStoredSession(file())->goals, "Rest");
    struct stat after {};
    ASSERT_EQ(::stat(file().c_str(), &after), 0);
    EXPECT_EQ(before.st_mtim.tv_nsec, after.st_mtim.tv_nsec);
    EXPECT_EQ(before.st_size, after.st_size);
    // No reading is held open: the log can be merged and emptied.
    EXPECT_EQ(writer.execAndGet("PRAGMA wal_checkpoint(TRUNCATE)").getInt(), 0);
    ASSERT_EQ(::stat((file() + "-wal").c_str(), &after), 0);
    EXPECT_EQ(after.st_size, 0);
}

} // namespace
} // namespace tarne::test
