// What a power cut would leave: what the system was told to bring to the disk.

#include "StoreTest.h"

#include <QFile>
#include <QFileInfo>
#include <SQLiteCpp/SQLiteCpp.h>

#include <array>
#include <atomic>
#include <string_view>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

std::atomic<int> logSyncs = 0;
std::atomic<qint64> syncedLogBytes = 0;

bool isLog(int file) {
    std::array<char, 4096> path{};
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    const ssize_t size = ::readlink(link.c_str(), path.data(), path.size());
    return size > 0 &&
           std::string_view(path.data(), static_cast<std::size_t>(size)).ends_with("-wal");
}

} // namespace

/// Takes the place of the system's, for SQLite too, and notes what is done to the store's log.
extern "C" [[gnu::visibility("default")]] int fdatasync(int file) {
    struct stat log {};
    const bool isStoresLog = isLog(file) && ::fstat(file, &log) == 0;
    const auto result = ::syscall(SYS_fdatasync, file);
    if (result == 0 && isStoresLog) {
        syncedLogBytes = log.st_size;
        ++logSyncs;
    }
    return static_cast<int>(result);
}

namespace tarne::test {
namespace {

class DefaultsSync : public StoreTest {};

TEST_F(DefaultsSync, EveryCommitIsOnTheDiskBeforeAnyoneSeesIt) {
    open();
    for (qint64 number = 1; number <= 5; ++number) {
        const int before = logSyncs;
        store().setObject(key, number);
        store().synchronize();
        runPosted();
        ASSERT_TRUE(comesToHold(key, std::to_string(number)));
        EXPECT_GT(logSyncs, before);
    }
}

TEST_F(DefaultsSync, WhatMeansNothingAfterAPowerCutDoesNotWakeTheDisk) {
    open();
    store().setObject(key, qint64{1});
    store().synchronize();
    runPosted();
    ASSERT_TRUE(comesToHold(key, "1"));
    const int before = logSyncs;
    for (qint64 number = 1; number <= 5; ++number) {
        store().setObject(passingKey, number);
        store().synchronize();
        runPosted();
        ASSERT_TRUE(comesToHold(passingKey, std::to_string(number)));
    }
    EXPECT_EQ(logSyncs, before);
    // Anything else reaches the disk again, also in their company.
    store().setObject(passingKey, qint64{6});
    store().setObject(key, qint64{2});
    store().synchronize();
    runPosted();
    ASSERT_TRUE(comesToHold(key, "2"));
    EXPECT_GT(logSyncs, before);
}

TEST_F(DefaultsSync, AFileInThePlaceOfALostOneIsOnTheDiskWhateverMadeItNeeded) {
    open();
    store().setObject(key, qint64{1});
    store().synchronize();
    runPosted();
    ASSERT_TRUE(comesToHold(key, "1"));
    for (const QString &name : {file(), file() + u"-wal"_s, file() + u"-shm"_s})
        ASSERT_TRUE(QFile::remove(name));
    syncedLogBytes = 0;
    store().setObject(passingKey, qint64{1});
    store().synchronize();
    runPosted();
    ASSERT_TRUE(eventually([&] {
        try {
            return stored(passingKey) == "1";
        } catch (const SQLite::Exception &) {
            return false; // There is no file yet, or no table in it.
        }
    }));
    EXPECT_EQ(stored(key), "1");
    EXPECT_EQ(syncedLogBytes, QFileInfo(file() + u"-wal"_s).size());
}

} // namespace
} // namespace tarne::test
