#pragma once

#include "Clock.h"
#include "DefaultsWriter.h"
#include "RunLoop.h"
#include "UserDefaults.h"

#include <QStringList>

#include <chrono>
#include <map>
#include <memory>
#include <optional>

namespace tarne {

/// The defaults store in the SQLite file `defaults.sqlite` of a folder of its own.
///
/// All values are loaded at construction, and reads come from memory: what another program writes
/// meanwhile is not seen. Changed keys are handed to a writer thread between two blocks of the run
/// loop and committed together, so that another process sees the values of one moment; that is
/// within 100 ms of `synchronize`, within a second otherwise, and in the destructor. No call but
/// the constructor and the destructor waits for the disk. docs/extension-bridge.md tells readers
/// in other processes what they find.
class StoredUserDefaults final : public UserDefaults {
public:
    /// The folder of this user: `$XDG_DATA_HOME/com.tarne.app`, by default in `~/.local/share`.
    [[nodiscard]] static QString standardFolder();

    /// Keys that are not like the others.
    struct Keys {
        QStringList restored; ///< They come back from a copy when the file is damaged.
        /// Their values mean nothing after the computer was off. Written alone, they do not wake
        /// the disk: a power cut may take what was written in the last half minute.
        QStringList passing;
    };

    /// Clock and run loop must outlive the store. `retryInterval` is for a disk that refuses to be
    /// written.
    StoredUserDefaults(const QString &folder, Keys keys, const Clock &clock, RunLoop &runLoop,
                       std::chrono::milliseconds retryInterval = std::chrono::seconds(1));
    ~StoredUserDefaults() override;
    StoredUserDefaults(const StoredUserDefaults &) = delete;
    StoredUserDefaults &operator=(const StoredUserDefaults &) = delete;

    std::optional<DefaultsValue> objectForKey(const QString &key) const override;
    void setObject(const QString &key, const DefaultsValue &value) override;
    void removeObjectForKey(const QString &key) override;
    void synchronize() override;

    /// Saves what is not saved yet and waits for it. What is written afterwards is not saved.
    void close();

private:
    void touch(const QString &key);
    void handOverAfter(RunLoop::Seconds delay);
    void handOver();

    const Clock &m_clock;
    RunLoop &m_runLoop;
    const QStringList m_passingKeys;
    DefaultsValues m_values;
    QStringList m_touched; ///< The keys written since the last hand-over, by their last write.
    std::map<QString, std::optional<DefaultsValue>> m_before; ///< What they were before.
    bool m_isHandOverPosted = false; ///< `synchronize` has posted one for what is touched now.
    std::unique_ptr<DefaultsWriter> m_writer;
    /// The hand-over that blocks in the run loop are for; blocks of an earlier one, or of a store
    /// that is gone, do nothing.
    std::shared_ptr<quint64> m_handOver = std::make_shared<quint64>(0);
};

} // namespace tarne
