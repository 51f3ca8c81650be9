#pragma once

#include <QString>
#include <QStringList>

namespace tarne {

class UserDefaults;

/// What the application remembers of the user between runs: one record, stored whole.
/// A new member is optional, or no stored document reads any more.
struct UserPreferences {
    double defaultDuration = 1500.0; ///< Seconds.
    QStringList defaultBlockedApps;
    QStringList defaultBlockedWebsites;
    bool notificationsEnabled = true; ///< Carried and stored, read by nothing.
    bool soundEnabled = true;         ///< Carried and stored, read by nothing.
    QString lastGoal;
    QString lastReflection;
    bool hasCompletedOnboarding = false;

    /// The stored record, or all defaults when it is absent or does not decode as a whole. Repairs
    /// nothing.
    [[nodiscard]] static UserPreferences load(const UserDefaults &defaults);

    /// Stores the whole record. Does not force the store to disk.
    void save(UserDefaults &defaults) const;

    friend bool operator==(const UserPreferences &, const UserPreferences &) = default;
};

} // namespace tarne
