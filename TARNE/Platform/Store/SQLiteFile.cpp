#include "SQLiteFile.h"

#include "DefaultsFault.h"
#include "DefaultsSchema.h"
#include "JsonPadding.h"
#include "StoreLog.h"
#include "Utf8.h"

#include <SQLiteCpp/Backup.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

#include <QFile>
#include <QUrl>

#include <sqlite3.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

/// How long one operation waits for another process's lock. The writer's end waits for two of them
/// at most.
constexpr int busyTimeoutMilliseconds = 250;

/// The length at which the log is merged into the file: 4 MiB, about four minutes of a session.
constexpr int longLogPages = 512;

DefaultsFault::Kind kindOf(const SQLite::Exception &exception) {
    // A sector that cannot be read any more is damage; other I/O errors may pass.
    if (exception.getExtendedErrorCode() == SQLITE_IOERR_READ ||
        exception.getExtendedErrorCode() == SQLITE_IOERR_CORRUPTFS)
        return DefaultsFault::Kind::Damaged;
    switch (exception.getErrorCode() & 0xff) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_ERROR: // Tables that are missing or that are not ours.
        return DefaultsFault::Kind::Damaged;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return DefaultsFault::Kind::Locked;
    default:
        return DefaultsFault::Kind::Unavailable;
    }
}

template <class Operation>
auto guarded(const Operation &operation) {
    try {
        return operation();
    } catch (const SQLite::Exception &exception) {
        throw DefaultsFault(kindOf(exception), exception.what());
    }
}

SQLite::Database opened(const QString &path, SQLiteFile::Access access) {
    using Access = SQLiteFile::Access;
    return guarded([&] {
        if (access == Access::ReadWrite)
            return SQLite::Database(path.toStdString(), SQLite::OPEN_READWRITE,
                                    busyTimeoutMilliseconds);
        QUrl url = QUrl::fromLocalFile(path);
        url.setQuery(access == Access::Immutable ? u"immutable=1"_s : u"mode=ro"_s);
        return SQLite::Database(url.toEncoded().toStdString(),
                                SQLite::OPEN_READONLY | SQLite::OPEN_URI, busyTimeoutMilliseconds);
    });
}

StoredValue::Cell cellOf(const SQLite::Column &column) {
    switch (column.getType()) {
    case SQLITE_INTEGER:
        return qint64{column.getInt64()};
    case SQLITE_FLOAT:
        return column.getDouble();
    case SQLITE_TEXT:
        return column.getString();
    case SQLITE_BLOB: {
        QByteArray data;
        data.reserve(column.getBytes() + json::paddingOfDocuments); // Most are JSON documents.
        data.append(static_cast<const char *>(column.getBlob()), column.getBytes());
        return data;
    }
    default:
        return std::monostate{};
    }
}

void bindCell(SQLite::Statement &statement, int index, const StoredValue::Cell &cell) {
    if (const auto *integer = std::get_if<qint64>(&cell))
        statement.bind(index, int64_t{*integer});
    else if (const auto *real = std::get_if<double>(&cell))
        statement.bind(index, *real);
    else if (const auto *text = std::get_if<std::string>(&cell))
        statement.bindNoCopy(index, *text);
    else if (const auto *data = std::get_if<QByteArray>(&cell))
        statement.bindNoCopy(index, data->constData(), static_cast<int>(data->size()));
}

/// No version of the program has a negative number.
int checkedVersion(SQLite::Database &database) {
    const int version = schemaVersion(database);
    if (version < 0)
        throw DefaultsFault(DefaultsFault::Kind::Damaged,
                            "its version is " + std::to_string(version));
    return version;
}

/// The inode of the file at `path`; 0 when there is none.
quint64 fileNumberOf(const QString &path) {
    struct stat status {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_ino : 0;
}

} // namespace

SQLiteFile::SQLiteFile(const QString &path, Access access)
    : m_database(opened(path, access)), m_path(path), m_fileNumber(fileNumberOf(path)) {
    guarded([&] {
        m_database.exec("PRAGMA mmap_size = 0");
        if (access == Access::ReadWrite)
            prepareForWriting();
    });
}

void SQLiteFile::prepareForWriting() {
    setMergesLogOnClose(false); // Until the file is known to be ours.
    const int version = checkedVersion(m_database);
    if (version > defaultsSchemaVersion)
        throw DefaultsFault(DefaultsFault::Kind::Newer, "version " + std::to_string(version));
    // SQLite falls back to reading where it may not write, and says so only here.
    if (sqlite3_db_readonly(m_database.getHandle(), "main") != 0)
        throw DefaultsFault(DefaultsFault::Kind::Unavailable, "it cannot be written");
    m_isNew = version == 0;
    // Measured: pages of twice the usual size save a large history a fifth faster, and two commits
    // a second still cost no more than 25 KiB.
    if (m_isNew)
        m_database.exec("PRAGMA page_size = 8192");
    m_database.exec("PRAGMA journal_mode = WAL");
    m_database.exec("PRAGMA synchronous = FULL");
    // What a large history made of the log is cut back when it has been merged.
    m_database.exec("PRAGMA journal_size_limit = 4194304");
    // Merging would make the commit that happens to fill the log take twice as long.
    m_database.exec("PRAGMA wal_autocheckpoint = 0");
    sqlite3_wal_hook(m_database.getHandle(), noteLogLength, this);
    migrateSchema(m_database);
    // The triggers are for other hands; ours would only read the old history again.
    sqlite3_db_config(m_database.getHandle(), SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    setMergesLogOnClose(true);
}

void SQLiteFile::setMergesLogOnClose(bool merges) {
    sqlite3_db_config(m_database.getHandle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, merges ? 0 : 1,
                      nullptr);
}

DefaultsValues SQLiteFile::load() {
    setMergesLogOnClose(false); // A damaged file is kept as it was found.
    DefaultsValues values = guarded([&] { return checkedRows(); });
    setMergesLogOnClose(true);
    return values;
}

DefaultsValues SQLiteFile::checkedRows() {
    DefaultsValues values;
    // One moment of the file, while other hands may write it.
    const SQLite::Transaction snapshot(m_database);
    const int version = checkedVersion(m_database);
    if (version == 0)
        return values;
    if (version == defaultsSchemaVersion)
        checkIndex();
    SQLite::Statement rows(m_database, "SELECT key, type, value, sum FROM defaults NOT INDEXED");
    while (rows.executeStep()) {
        const QString key = textOfUtf8(rows.getColumn(0).getString());
        const StoredValue stored(rows.getColumn(1).getString(), cellOf(rows.getColumn(2)));
        const auto sum = rows.getColumn(3);
        // In every version: a damaged version number must not pass for a newer one's values.
        if (!sum.isNull() && sum.getInt64() != stored.checksum())
            throw DefaultsFault(DefaultsFault::Kind::Damaged,
                                "the value of " + key.toStdString() + " is not what was written");
        if (const auto value = stored.decoded())
            values.insert(key, *value);
        else
            qCWarning(storeLog).noquote() << "ignoring" << key << "in the defaults store:"
                                          << "its value does not fit its type";
    }
    return values;
}

/// A key is in no checksum, but it stands twice in the file: in the table and in the table's index.
void SQLiteFile::checkIndex() {
    const auto keys = [&](const char *query) {
        QStringList found;
        SQLite::Statement statement(m_database, query);
        while (statement.executeStep())
            found += textOfUtf8(statement.getColumn(0).getString());
        found.sort();
        return found;
    };
    const QStringList inTable = keys("SELECT key FROM defaults NOT INDEXED");
    if (inTable != keys("SELECT key FROM defaults INDEXED BY sqlite_autoindex_defaults_1"))
        throw DefaultsFault(DefaultsFault::Kind::Damaged, "its keys and their index differ");
}

void SQLiteFile::prepareFor(Commit commit) {
    if (m_commit == commit)
        return;
    m_database.exec(commit == Commit::Durable ? "PRAGMA synchronous = FULL"
                                              : "PRAGMA synchronous = NORMAL");
    m_commit = commit;
}

void SQLiteFile::write(const DefaultsChanges &changes, Commit commit) {
    guarded([&] {
        prepareFor(commit);
        SQLite::Transaction transaction(m_database, SQLite::TransactionBehavior::IMMEDIATE);
        SQLite::Statement set(m_database,
                              "INSERT INTO defaults (key, type, value, sum) VALUES (?, ?, ?, ?) "
                              "ON CONFLICT (key) DO UPDATE "
                              "SET type = excluded.type, value = excluded.value, "
                              "sum = excluded.sum");
        SQLite::Statement remove(m_database, "DELETE FROM defaults WHERE key = ?");
        for (const auto &[key, value] : changes) {
            SQLite::Statement &statement = value ? set : remove;
            statement.bind(1, key.toStdString());
            if (value) {
                const StoredValue stored(*value);
                statement.bind(2, stored.type);
                bindCell(statement, 3, stored.cell);
                statement.bind(4, int64_t{stored.checksum()});
                statement.exec();
            } else {
                statement.exec();
            }
            statement.reset();
            statement.clearBindings();
        }
        transaction.commit();
    });
}

int SQLiteFile::noteLogLength(void *file, sqlite3 *, const char *, int pages) {
    static_cast<SQLiteFile *>(file)->m_pagesInLog = pages;
    return SQLITE_OK;
}

void SQLiteFile::mergeLongLog() {
    if (m_pagesInLog < longLogPages)
        return;
    m_pagesInLog = 0;
    // Passive: what a reader still needs stays in the log until a later turn.
    sqlite3_wal_checkpoint_v2(m_database.getHandle(), nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr,
                              nullptr);
}

void SQLiteFile::releaseMemory() {
    sqlite3_db_release_memory(m_database.getHandle());
}

bool SQLiteFile::isInPlace() const {
    return fileNumberOf(m_path) == m_fileNumber;
}

void SQLiteFile::copyTo(const QString &path) {
    guarded([&] {
        SQLite::Database copy(path.toStdString(), SQLite::OPEN_READWRITE);
        if (SQLite::Backup(copy, m_database).executeStep() != SQLITE_DONE)
            throw DefaultsFault(DefaultsFault::Kind::Locked, "the file is locked");
        // The copy takes over that the file has a log; one that is never written needs none.
        copy.exec("PRAGMA journal_mode = DELETE");
    });
}

} // namespace tarne
