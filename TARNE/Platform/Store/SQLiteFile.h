#pragma once

#include "StoredValue.h"

#include <SQLiteCpp/Database.h>

#include <QString>

namespace tarne {

/// One connection to a file of the store. Its statements and those of DefaultsSchema are all the
/// SQL of the program.
///
/// May be used from any one thread at a time. Every operation throws DefaultsFault.
class SQLiteFile {
public:
    enum class Access {
        ReadWrite, ///< Creates the file and its tables when absent, and writes ahead into a log.
        ReadOnly,  ///< Reads beside another connection, its log included.
        Immutable, ///< Reads the file alone, and needs nothing that a read-only disk lacks.
    };

    enum class Commit {
        Durable, ///< It is on the disk when the call returns, with all that came before it.
        Relaxed, ///< A kill does not take it; a power cut may. It does not wake the disk.
    };

    SQLiteFile(const QString &path, Access access);
    SQLiteFile(const SQLiteFile &) = delete;
    SQLiteFile &operator=(const SQLiteFile &) = delete;

    /// Every value that fits its type, after checking the whole table for damage. A value that
    /// another program planted in an unfit form is left out, with a line on standard error.
    [[nodiscard]] DefaultsValues load();

    /// Writes all changes, in their order, in one transaction. After an exception none of them is
    /// written.
    void write(const DefaultsChanges &changes, Commit commit);

    /// Merges the log into the file when it has grown long. A failure leaves it for a later turn.
    void mergeLongLog();

    /// Drops what is kept in memory of the file, for a program that does not need it again soon.
    void releaseMemory();

    /// Copies the whole file as it stands, its log included, into the empty file at `path`.
    void copyTo(const QString &path);

    /// Whether the file that this connection writes is still the one found under its path. SQLite
    /// itself goes on writing into a file that was deleted.
    bool isInPlace() const;

    /// Makes closing leave the log as it is. For a file that is not ours, or not in place.
    void keepLogOnClose() { setMergesLogOnClose(false); }

    /// Whether this connection created the tables.
    bool isNew() const { return m_isNew; }

private:
    static int noteLogLength(void *file, sqlite3 *, const char *, int pages);

    void prepareForWriting();
    void prepareFor(Commit commit);
    void setMergesLogOnClose(bool merges);
    DefaultsValues checkedRows();
    void checkIndex();

    SQLite::Database m_database;
    QString m_path;
    quint64 m_fileNumber; ///< Identifies the opened file, whatever becomes of its name.
    bool m_isNew = false;
    Commit m_commit = Commit::Durable;
    int m_pagesInLog = 0;
};

} // namespace tarne
