// A file that a newer version of the program has written: it is read and left alone.

#include "DefaultsFaultFixture.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

TEST_F(DefaultsFaults, AFileOfANewerVersionIsReadAndLeftAlone) {
    open().setObject(historyKey, QByteArray("[\"newer\"]"));
    close();
    execute("PRAGMA user_version = 2");
    const QByteArray before = bytesOf(file());
    open();
    EXPECT_EQ(store().dataForKey(historyKey), QByteArray("[\"newer\"]"));
    store().setObject(historyKey, QByteArray("[]"));
    EXPECT_EQ(store().dataForKey(historyKey), QByteArray("[]"));
    close();
    EXPECT_TRUE(bytesOf(file()) == before);
    EXPECT_EQ(damagedFiles(), QStringList());
    expectOneLineThatSays("newer version of TARNE (version 2)");
}

TEST_F(DefaultsFaults, AValueThatIsDamagedIsNotReadFromANewerVersionEither) {
    open().setObject(historyKey, QByteArray("[\"newer\"]"));
    close();
    execute("PRAGMA user_version = 2");
    corrupt("[\"newer\"]", "[\"nower\"]");
    const QByteArray before = bytesOf(file());
    EXPECT_EQ(open().objectForKey(historyKey), std::nullopt);
    close();
    EXPECT_TRUE(bytesOf(file()) == before);
    expectOneLineThatSays("its values cannot be read");
}

TEST_F(DefaultsFaults, TheLogOfANewerVersionIsLeftAloneToo) {
    const QString log = file() + u"-wal"_s;
    open();
    write(u"before"_s);
    ASSERT_TRUE(comesToHold(key, "before"));
    execute("PRAGMA user_version = 2"); // In the log, since the store's connection is open.
    const QByteArray fileOfAKilledRun = bytesOf(file());
    const QByteArray logOfAKilledRun = bytesOf(log);
    close();
    overwrite(file(), 0, fileOfAKilledRun);
    ASSERT_TRUE(QFile::resize(file(), fileOfAKilledRun.size()));
    overwrite(log, 0, logOfAKilledRun);
    EXPECT_EQ(open().stringForKey(key), u"before"_s);
    close();
    EXPECT_TRUE(bytesOf(file()) == fileOfAKilledRun);
    EXPECT_TRUE(bytesOf(log) == logOfAKilledRun);
    expectOneLineThatSays("version 2");
}

TEST_F(DefaultsFaults, ANewerVersionWithOtherTablesIsLeftAlone) {
    open();
    close();
    execute("DROP TABLE defaults; CREATE TABLE settings (x); PRAGMA user_version = 7");
    const QByteArray before = bytesOf(file());
    open().setObject(key, true);
    close();
    EXPECT_TRUE(bytesOf(file()) == before);
    expectOneLineThatSays("its values cannot be read");
}

} // namespace
} // namespace tarne::test
