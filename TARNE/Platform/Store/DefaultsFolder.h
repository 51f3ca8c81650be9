#pragma once

#include "Date.h"

#include <QString>

#include <utility>

namespace tarne {

/// The files of the store and their names. Only the user can read them: folders are made with mode
/// 0700, files with 0600.
class DefaultsFolder {
public:
    /// `name` is what the names of its files begin with, `title` what the lines on standard error
    /// call it.
    explicit DefaultsFolder(QString path, QString name = QStringLiteral("defaults"),
                            QString title = QStringLiteral("the defaults store"))
        : m_path(std::move(path)), m_name(std::move(name)), m_title(std::move(title)) {}

    QString title() const { return m_title; }
    QString file() const;
    QString copies() const;      ///< The folder of the daily copies.
    QString scratchFile() const; ///< Where a file is built that takes the place of `file`.

    QString lockFile() const; ///< See DefaultsLock.

    /// Makes the folder of the store alone, if absent.
    void createFolder() const;

    /// Makes both folders and an empty file, each only if absent. A failure shows when the file is
    /// opened.
    void create() const;

    /// Puts the scratch file in the place of the file, which is kept under a new name together with
    /// its log. Returns the new name; throws DefaultsFault where the disk refuses, and leaves the
    /// file in its place.
    QString setAsideAndReplace(Date now) const;

    /// Creates an empty file with mode 0600 if there is none, and takes an existing one's from
    /// others.
    static void createPrivateFile(const QString &path);
    /// Whether the log beside a file that SQLite made may hold what the file lacks.
    static bool hasLog(const QString &path);
    /// Removes a file that SQLite made, and its log.
    static void removeFile(const QString &path);
    /// Gives a file another name, and never copies it; throws DefaultsFault.
    static void moveFile(const QString &from, const QString &to);

private:
    QString unusedNameForDamaged(Date now) const;

    QString m_path;
    QString m_name;
    QString m_title;
};

} // namespace tarne
