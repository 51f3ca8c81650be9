#pragma once

namespace SQLite {
class Database;
}

namespace tarne {

/// The version of the store's tables that this program writes, kept in `PRAGMA user_version`.
inline constexpr int defaultsSchemaVersion = 1;

/// The version of an open file; 0 when it is new.
[[nodiscard]] int schemaVersion(SQLite::Database &database);

/// Brings an open file from its version to ours, each step in a transaction of its own.
/// Throws SQLite::Exception.
void migrateSchema(SQLite::Database &database);

} // namespace tarne
