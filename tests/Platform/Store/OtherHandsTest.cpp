// What the store does while another process reads, writes, locks or hides its file.

#include "DefaultsFaultFixture.h"
#include "SQLiteFile.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <atomic>
#include <thread>
#include <tuple>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

/// Another process that holds a lock on the file until `release`.
class LockingProcess {
public:
    LockingProcess(const QString &kind, const QString &file) {
        m_process.start(QStringLiteral(TARNE_STORE_HELPER), {kind, file});
        EXPECT_TRUE(m_process.waitForReadyRead()) << m_process.readAllStandardError().constData();
    }
    void release() {
        m_process.closeWriteChannel();
        EXPECT_TRUE(m_process.waitForFinished());
    }

private:
    QProcess m_process;
};

TEST_F(DefaultsFaults, AFileThatAnotherHandWritesMeanwhileIsReadAsOfOneMoment) {
    open();
    write(u"before"_s);
    close();
    std::atomic<bool> isRead = false;
    std::thread hand([&] {
        while (!isRead) {
            execute("INSERT INTO defaults (key, type, value) VALUES ('Other', 'text', 'value')");
            execute("DELETE FROM defaults WHERE key = 'Other'");
        }
    });
    for (int reading = 0; reading < 1'000; ++reading) {
        EXPECT_NO_THROW(std::ignore = SQLiteFile(file(), SQLiteFile::Access::ReadOnly).load());
    }
    isRead = true;
    hand.join();
}

TEST_F(DefaultsFaults, ALockOfAnotherProcessDelaysTheWrite) {
    open();
    write(u"before"_s);
    ASSERT_TRUE(comesToHold(key, "before"));
    LockingProcess locking(u"lock"_s, file());
    write(u"while locked"_s);
    ASSERT_TRUE(isRefusalTold());
    EXPECT_EQ(stored(key), "before");
    locking.release();
    EXPECT_TRUE(comesToHold(key, "while locked"));
    expectOneLineThatSays("locked");
}

TEST_F(DefaultsFaults, WhatADelayKeptIsWrittenInTheOrderOfTheLatestChanges) {
    open();
    write(u"before"_s);
    ASSERT_TRUE(comesToHold(key, "before"));
    LockingProcess locking(u"lock"_s, file());
    store().setObject(u"A"_s, qint64{1});
    store().setObject(u"B"_s, qint64{1});
    write(u"while locked"_s);
    ASSERT_TRUE(isRefusalTold());
    store().setObject(u"A"_s, qint64{2});
    write(u"still locked"_s);
    locking.release();
    ASSERT_TRUE(comesToHold(u"A"_s, "2"));
    EXPECT_EQ(read("SELECT group_concat(key, '') FROM "
                   "(SELECT key FROM defaults WHERE key IN ('A', 'B') ORDER BY rowid)"),
              "BA");
}

TEST_F(DefaultsFaults, ALockOfAnotherProcessNeverHoldsTheCaller) {
    open();
    LockingProcess locking(u"lock"_s, file());
    QElapsedTimer spent;
    spent.start();
    write(u"while locked"_s);
    // The lock lasts until the release: a caller that waits for it waits for this long at least.
    EXPECT_LT(spent.elapsed(), 250);
    ASSERT_TRUE(isRefusalTold());
    locking.release();
}

TEST_F(DefaultsFaults, ALockOfAnotherProcessAtTheStartLetsTheValuesBeRead) {
    open().setObject(key, u"before"_s);
    close();
    LockingProcess locking(u"lock"_s, file());
    EXPECT_EQ(open().stringForKey(key), u"before"_s);
    locking.release();
    write(u"after"_s);
    EXPECT_TRUE(comesToHold(key, "after"));
}

TEST_F(DefaultsFaults, ALockAtTheEndDelaysItByABoundedTime) {
    open();
    LockingProcess locking(u"lock"_s, file());
    store().setObject(key, u"lost"_s);
    QElapsedTimer spent;
    spent.start();
    close();
    EXPECT_LT(spent.elapsed(), 5000);
    locking.release();
    expectOneLineThatSays("locked");
}

TEST_F(DefaultsFaults, AFileThatAnotherProcessLetsNobodyReadIsNotOverwritten) {
    open().setObject(historyKey, QByteArray("[\"precious\"]"));
    close();
    LockingProcess locking(u"lock-all"_s, file());
    QElapsedTimer spent;
    spent.start();
    EXPECT_EQ(open().objectForKey(historyKey), std::nullopt);
    EXPECT_LT(spent.elapsed(), 5000);
    locking.release();
    store().setObject(historyKey, QByteArray("[]"));
    close();
    EXPECT_EQ(stored(historyKey), "[\"precious\"]");
    expectOneLineThatSays("cannot be read");
}

} // namespace
} // namespace tarne::test
