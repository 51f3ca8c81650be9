#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tarne::test {

/// The number of the values that a prepared folder holds, and of those that its copies hold.
inline constexpr qint64 preparedNumber = 1'001;
inline constexpr qint64 copiedNumber = 901;

/// Folders of the store and of the notifier's file, as an earlier run has left them.
class FaultStages {
public:
    enum class Stage {
        Absent,   ///< There was no earlier run.
        Whole,    ///< It has ended, days ago: a copy is due, and the oldest one is to go.
        Killed,   ///< It was killed: a part is in the log.
        Damaged,  ///< It was killed, and the file is damaged; there is a copy.
        Requests, ///< The notifier's file; its earlier run has ended.
    };

    FaultStages();

    static QByteArray nameOf(Stage stage);

    /// A new folder of the stage; it replaces the one that was made last.
    [[nodiscard]] QString make(Stage stage);

    /// The paths of all files that a run in this folder may touch.
    [[nodiscard]] static QStringList filesOf(const QString &folder);

    /// The damaged file, as it was found.
    [[nodiscard]] QByteArray damagedBytes() const { return m_damagedBytes; }

private:
    [[nodiscard]] QString prepared(Stage stage) const;
    void prepareWhole() const;
    void prepareKilled(Stage stage) const;
    void damage();

    QTemporaryDir m_folder;
    QByteArray m_damagedBytes;
};

} // namespace tarne::test
