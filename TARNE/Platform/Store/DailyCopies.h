#pragma once

#include "Date.h"
#include "DefaultsFolder.h"

#include <QString>
#include <QStringList>

#include <utility>

namespace tarne {

class SQLiteFile;

/// The copies of the store, one for each day (UTC) on which it was used, the latest seven kept.
class DailyCopies {
public:
    static constexpr int kept = 7;

    explicit DailyCopies(DefaultsFolder folder) : m_folder(std::move(folder)) {}

    /// Copies the file unless the day has its copy already, and removes the oldest beyond seven. A
    /// failure costs the day's copy and a line on standard error.
    void copyOncePerDay(SQLiteFile &file, Date now);

    /// The paths of the copies, the latest day first. Days after that of `now` come behind all
    /// others: a clock that was ahead has left them, or one that is behind now meets them.
    [[nodiscard]] QStringList latestFirst(Date now) const;

private:
    DefaultsFolder m_folder;
    QString m_lastDay; ///< The day that was last seen to, with or without success.
};

} // namespace tarne
