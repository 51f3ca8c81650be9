#pragma once

#include "ManualTime.h"
#include "StoredUserDefaults.h"

#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

namespace tarne::test {

inline constexpr RunLoop::Seconds day{86400.0};

/// Some key, where it does not matter which.
inline const QString key = QStringLiteral("Key");

inline const QString preferencesKey = QStringLiteral("UserPreferences");
/// What means nothing after the computer was off.
inline const QString passingKey = QStringLiteral("LastUpdate");
inline const QString historyKey = QStringLiteral("SessionHistory");
inline const QString goalsKey = QStringLiteral("ScheduledGoals");
inline const QString timerKey = QStringLiteral("TimerStartTime");

/// Collects the lines that the store writes to standard error, which then are no failures.
class StoreDiagnostics {
public:
    StoreDiagnostics();
    ~StoreDiagnostics();
    StoreDiagnostics(const StoreDiagnostics &) = delete;
    StoreDiagnostics &operator=(const StoreDiagnostics &) = delete;

    static QStringList lines();
};

/// Waits, without blocking the event loop, until `condition` holds; false after twenty seconds.
[[nodiscard]] bool eventually(const std::function<bool()> &condition);

/// A store in a temporary folder with a real file, under a manual clock and run loop.
class StoreTest : public testing::Test {
protected:
    StoreTest();

    StoredUserDefaults &open();
    void close() { m_store.reset(); }
    StoredUserDefaults &reopen();
    StoredUserDefaults &store() { return *m_store; }

    /// Lets the posted hand-over run, which follows a `synchronize` soon.
    void runPosted() { time.advance(RunLoop::Seconds(0.01)); }

    // What another program does to the file, through a connection of its own.

    /// The first column of the first row, as text; empty without a row.
    std::string read(const std::string &query) const;
    void execute(const std::string &statements) const;
    /// The stored value of a key, as text; empty when it is absent.
    std::string stored(const QString &name) const;
    /// Whether the file comes to hold `value` under `key`.
    [[nodiscard]] bool comesToHold(const QString &name, const std::string &value) const;

    QString folder() const { return m_directory.filePath(QStringLiteral("com.tarne.app")); }
    QString file() const { return folder() + QStringLiteral("/defaults.sqlite"); }
    QString copiesFolder() const { return folder() + QStringLiteral("/copies"); }
    QStringList filesIn(const QString &path) const;
    QStringList damagedFiles() const;
    QByteArray bytesOf(const QString &path) const;
    /// Overwrites bytes of a file in place.
    void overwrite(const QString &path, qint64 offset, const QByteArray &bytes) const;
    /// Replaces the only occurrence of `bytes` in the file by others of the same length.
    void corrupt(const QByteArray &bytes, const QByteArray &by) const;

    ManualTime time;

private:
    QTemporaryDir m_directory;
    std::optional<StoredUserDefaults> m_store;
};

} // namespace tarne::test
