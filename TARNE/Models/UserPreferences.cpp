#include "UserPreferences.h"

#include "JsonCoder.h"
#include "StoredKeys.h"
#include "UserDefaults.h"

namespace tarne {

template <>
struct json::JsonForm<UserPreferences> {
    static constexpr std::tuple members{
        member("defaultDuration", &UserPreferences::defaultDuration),
        member("defaultBlockedApps", &UserPreferences::defaultBlockedApps),
        member("defaultBlockedWebsites", &UserPreferences::defaultBlockedWebsites),
        member("notificationsEnabled", &UserPreferences::notificationsEnabled),
        member("soundEnabled", &UserPreferences::soundEnabled),
        member("lastGoal", &UserPreferences::lastGoal),
        member("lastReflection", &UserPreferences::lastReflection),
        member("hasCompletedOnboarding", &UserPreferences::hasCompletedOnboarding)};
    static UserPreferences blank() { return {}; }
};

UserPreferences UserPreferences::load(const UserDefaults &defaults) {
    const std::optional<QByteArray> data = defaults.dataForKey(keys::userPreferences);
    if (!data)
        return {};
    return json::decode<UserPreferences>(*data).value_or(UserPreferences());
}

void UserPreferences::save(UserDefaults &defaults) const {
    if (const std::optional<QByteArray> data = json::encode(*this))
        defaults.setObject(keys::userPreferences, *data);
}

} // namespace tarne
