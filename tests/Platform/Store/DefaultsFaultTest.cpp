#include "DefaultsFaultFixture.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <gmock/gmock.h>

#include <atomic>
#include <csignal>
#include <thread>
#include <tuple>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

/// A disk without a free byte, for this process: no file may be written beyond its first byte. The
/// system refuses the same calls as on a disk that is full, and no privilege is needed.
class FullDisk {
public:
    FullDisk() {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit full{0, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_before); }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

private:
    rlimit m_before{};
};

/// A folder that cannot be written. Permissions do not bind root, so a test that runs as root takes
/// the identity of nobody as long as this lives.
class ReadOnlyFolder {
public:
    explicit ReadOnlyFolder(const QString &folder) : m_folder(QFile::encodeName(folder)) {
        if (m_isRoot) {
            // The folder above, made for root alone, has to let nobody pass.
            const QDir above(QDir(folder).filePath(u".."_s));
            EXPECT_EQ(::chmod(QFile::encodeName(above.canonicalPath()).constData(), 0755), 0);
            give(folder);
            EXPECT_EQ(::setegid(nobody), 0);
            EXPECT_EQ(::seteuid(nobody), 0);
        }
        EXPECT_EQ(::chmod(m_folder.constData(), 0500), 0);
        EXPECT_NE(::access(m_folder.constData(), F_OK), -1);
    }
    ~ReadOnlyFolder() {
        makeWritable();
        if (m_isRoot) {
            EXPECT_EQ(::seteuid(0), 0);
            EXPECT_EQ(::setegid(0), 0);
        }
    }
    ReadOnlyFolder(const ReadOnlyFolder &) = delete;
    ReadOnlyFolder &operator=(const ReadOnlyFolder &) = delete;

    void makeWritable() { EXPECT_EQ(::chmod(m_folder.constData(), 0700), 0); }

private:
    static constexpr uid_t nobody = 65534;

    void give(const QString &path) {
        EXPECT_EQ(::chown(QFile::encodeName(path).constData(), nobody, nobody), 0);
        const QDir directory(path);
        for (const QString &name :
             directory.entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden))
            give(directory.filePath(name));
    }

    const bool m_isRoot = ::geteuid() == 0;
    const QByteArray m_folder;
};

TEST_F(DefaultsFaults, AFullDiskCostsTheWriteAndSavingResumesByItself) {
    open();
    write(u"before"_s);
    ASSERT_TRUE(comesToHold(key, "before"));
    {
        const FullDisk full;
        write(u"while full"_s);
        ASSERT_TRUE(isRefusalTold());
        EXPECT_EQ(store().stringForKey(key), u"while full"_s);
        store().setObject(u"Other"_s, true);
    }
    EXPECT_TRUE(comesToHold(key, "while full"));
}

TEST_F(DefaultsFaults, AFullDiskIsToldOnce) {
    open();
    write(u"before"_s);
    ASSERT_TRUE(comesToHold(key, "before"));
    {
        const FullDisk full;
        for (int number = 0; number < 20; ++number) {
            write(QString::number(number));
            EXPECT_TRUE(isRefusalTold());
        }
    }
    ASSERT_TRUE(comesToHold(key, "19"));
    expectOneLineThatSays("cannot be saved now");
}

TEST_F(DefaultsFaults, AnotherFullDiskIsToldAgain) {
    open();
    for (int outage = 1; outage <= 2; ++outage) {
        {
            const FullDisk full;
            write(QString::number(outage));
            EXPECT_TRUE(eventually([&] { return StoreDiagnostics::lines().size() == outage; }));
        }
        ASSERT_TRUE(comesToHold(key, std::to_string(outage)));
    }
}

TEST_F(DefaultsFaults, ADiskThatIsFullAtTheStartIsReadAllTheSame) {
    open();
    write(u"before"_s);
    close();
    {
        const FullDisk full;
        EXPECT_EQ(open().stringForKey(key), u"before"_s);
        EXPECT_EQ(StoreDiagnostics::lines(), QStringList());
        write(u"while full"_s);
        ASSERT_TRUE(isRefusalTold());
    }
    EXPECT_TRUE(comesToHold(key, "while full"));
}

TEST_F(DefaultsFaults, ADiskThatIsFullAtTheVeryFirstStartIsSavedToLater) {
    {
        const FullDisk full;
        open();
        write(u"first"_s);
        ASSERT_TRUE(isRefusalTold());
        store().setObject(u"Other"_s, qint64{2});
    }
    EXPECT_TRUE(eventually([&] { return QFile(file()).size() > 0; }));
    close();
    EXPECT_EQ(stored(key), "first");
    EXPECT_EQ(stored(u"Other"_s), "2");
    EXPECT_EQ(StoreDiagnostics::lines().size(), 1);
}

TEST_F(DefaultsFaults, ADiskThatIsFullAtTheEndCostsTheLastWriteOnly) {
    open();
    write(u"before"_s);
    ASSERT_TRUE(comesToHold(key, "before"));
    {
        const FullDisk full;
        store().setObject(key, u"lost"_s);
        close();
    }
    expectOneLineThatSays("cannot be saved now");
    EXPECT_EQ(open().stringForKey(key), u"before"_s);
}

TEST_F(DefaultsFaults, DamageOnAFullDiskIsMendedWhenThereIsRoom) {
    open().setObject(historyKey, QByteArray("[\"kept\"]"));
    reopen(); // Makes the day's copy.
    close();
    overwrite(file(), 0, QByteArray(100, '\x5a'));
    {
        const FullDisk full;
        EXPECT_EQ(open().dataForKey(historyKey), QByteArray("[\"kept\"]"));
        EXPECT_EQ(damagedFiles(), QStringList());
    }
    EXPECT_TRUE(eventually([&] { return damagedFiles().size() == 1; }));
    close();
    EXPECT_EQ(stored(historyKey), "[\"kept\"]");
}

TEST_F(DefaultsFaults, AReadOnlyFolderIsRead) {
    open().setObject(historyKey, QByteArray("[]"));
    close();
    const ReadOnlyFolder readOnly(folder());
    EXPECT_EQ(open().dataForKey(historyKey), QByteArray("[]"));
    EXPECT_EQ(StoreDiagnostics::lines(), QStringList());
    close();
}

TEST_F(DefaultsFaults, AReadOnlyFolderIsSavedToWhenItBecomesWritable) {
    open().setObject(key, u"before"_s);
    close();
    ReadOnlyFolder readOnly(folder());
    open();
    write(u"after"_s);
    ASSERT_TRUE(isRefusalTold());
    readOnly.makeWritable();
    EXPECT_TRUE(comesToHold(key, "after"));
    close();
    EXPECT_EQ(StoreDiagnostics::lines().size(), 1);
}

TEST_F(DefaultsFaults, AFolderThatCannotBeMadeIsMadeWhenThatIsPossible) {
    QFile inTheWay(folder());
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    inTheWay.close();
    open();
    write(u"kept"_s);
    ASSERT_TRUE(isRefusalTold());
    ASSERT_TRUE(inTheWay.remove());
    ASSERT_TRUE(eventually([&] { return QFile(file()).size() > 0; }));
    close();
    EXPECT_EQ(stored(key), "kept");
    EXPECT_EQ(StoreDiagnostics::lines().size(), 1);
}

TEST_F(DefaultsFaults, AFolderThatIsDeletedWhileWeRunIsWrittenAnewWithAllValues) {
    open().setObject(u"Other"_s, u"kept"_s);
    write(u"before"_s);
    ASSERT_TRUE(comesToHold(key, "before"));
    ASSERT_TRUE(QDir(folder()).removeRecursively());
    write(u"after"_s);
    close();
    EXPECT_EQ(stored(key), "after");
    EXPECT_EQ(stored(u"Other"_s), "kept");
    EXPECT_EQ(StoreDiagnostics::lines(), QStringList());
}

TEST_F(DefaultsFaults, AFileThatCannotBeReadIsNeverOverwritten) {
    open().setObject(historyKey, QByteArray("[\"precious\"]"));
    close();
    const QByteArray before = bytesOf(file());
    {
        const ReadOnlyFolder asNobody(folder());
        ASSERT_EQ(::chmod(QFile::encodeName(file()).constData(), 0), 0);
        open();
        EXPECT_EQ(store().objectForKey(historyKey), std::nullopt);
        ASSERT_EQ(::chmod(QFile::encodeName(file()).constData(), 0600), 0);
        store().setObject(historyKey, QByteArray("[]"));
        EXPECT_EQ(store().dataForKey(historyKey), QByteArray("[]"));
        close();
    }
    EXPECT_TRUE(bytesOf(file()) == before);
    expectOneLineThatSays("cannot be read");
}

TEST_F(DefaultsFaults, AFolderInThePlaceOfTheFileIsSetAside) {
    ASSERT_TRUE(QDir().mkpath(file() + u"/inside"_s));
    open();
    write(u"saved"_s);
    close();
    expectOneLineThatSays("set aside");
    EXPECT_EQ(stored(key), "saved");
    EXPECT_TRUE(QDir(folder() + u"/defaults.damaged-20260302-120000.sqlite/inside"_s).exists());
}

} // namespace
} // namespace tarne::test
