#include "StoredSession.h"

#include "GoalsText.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <array>
#include <cmath>
#include <string_view>

namespace tarne {

namespace {

constexpr int newestVersion = 1;
constexpr int patienceMilliseconds = 1000;

/// Version and values of one moment. The goals are cut by characters here, far above what is told,
/// since a goal of a megabyte would be copied once a second.
constexpr const char *query = R"sql(
    SELECT 'version', user_version FROM pragma_user_version
    UNION ALL
    SELECT key, CASE typeof(value) WHEN 'text' THEN substr(value, 1, 10000) ELSE value END
    FROM defaults
    WHERE key IN ('SessionActive', 'SessionGoals', 'SessionId', 'TimeRemaining',
                  'SessionDuration', 'LastUpdate')
)sql";

bool readFlag(const SQLite::Column &value, bool &result) {
    result = value.getInt64() == 1;
    return value.isInteger();
}

bool readText(const SQLite::Column &value, std::string &result) {
    result = value.getString();
    return value.isText() && isValidUtf8(result);
}

bool readSeconds(const SQLite::Column &value, double &result) {
    constexpr double farthest = 1e12; // 30,000 years.
    result = value.getDouble();
    return value.isFloat() && std::abs(result) <= farthest;
}

bool readRow(const std::string &key, const SQLite::Column &value, StoredSession &session) {
    if (key == "version")
        return value.getInt() <= newestVersion;
    if (key == "SessionActive")
        return readFlag(value, session.isActive);
    if (key == "SessionGoals")
        return readText(value, session.goals);
    if (key == "SessionId")
        return readText(value, session.id);
    if (key == "TimeRemaining")
        return readSeconds(value, session.timeRemaining);
    if (key == "SessionDuration")
        return readSeconds(value, session.duration);
    return readSeconds(value, session.lastUpdate);
}

} // namespace

std::optional<StoredSession> readStoredSession(const std::string &file) {
    try {
        const SQLite::Database store(file, SQLite::OPEN_READONLY, patienceMilliseconds);
        SQLite::Statement rows(store, query);
        StoredSession session;
        while (rows.executeStep()) {
            if (!readRow(rows.getColumn(0).getString(), rows.getColumn(1), session))
                return std::nullopt;
        }
        return session;
    } catch (const SQLite::Exception &) {
        return std::nullopt;
    }
}

} // namespace tarne
