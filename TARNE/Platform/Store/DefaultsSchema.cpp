#include "DefaultsSchema.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Transaction.h>

#include <array>
#include <string>

namespace tarne {

namespace {

/// 0 to 1. The comparison of storage classes in the trigger is there because SQLite holds 1 and 1.0
/// for the same value, and the checksum does not.
void createDefaultsTable(SQLite::Database &database) {
    database.exec(R"sql(
        CREATE TABLE defaults (
          key   TEXT PRIMARY KEY,
          type  TEXT NOT NULL
                CHECK (type IN ('boolean', 'integer', 'double', 'text', 'date', 'data')),
          value ANY NOT NULL,
          sum   INTEGER
        ) STRICT;
        CREATE TRIGGER written_by_another_hand AFTER UPDATE ON defaults
        WHEN NEW.sum IS OLD.sum
             AND (NEW.type IS NOT OLD.type OR typeof(NEW.value) IS NOT typeof(OLD.value)
                  OR NEW.value IS NOT OLD.value)
        BEGIN
          UPDATE defaults SET sum = NULL WHERE key = NEW.key;
        END;
    )sql");
}

using Step = void (*)(SQLite::Database &);
constexpr std::array<Step, defaultsSchemaVersion> steps{createDefaultsTable};

} // namespace

int schemaVersion(SQLite::Database &database) {
    return database.execAndGet("PRAGMA user_version").getInt();
}

void migrateSchema(SQLite::Database &database) {
    for (int version = schemaVersion(database); version < defaultsSchemaVersion; ++version) {
        SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
        steps.at(static_cast<std::size_t>(version))(database);
        database.exec("PRAGMA user_version = " + std::to_string(version + 1));
        transaction.commit();
    }
}

} // namespace tarne
