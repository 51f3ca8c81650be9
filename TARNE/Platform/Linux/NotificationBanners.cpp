#include "NotificationBanners.h"

#include "UserDefaults.h"

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne {

namespace {

constexpr const char *schemaName = "org.gnome.desktop.notifications";
constexpr const char *banners = "show-banners";

/// In the store while the setting is changed: what it was.
constexpr QLatin1StringView owed{"NotificationBannersBefore"};
constexpr QLatin1StringView wasDefault{"default"};
constexpr QLatin1StringView wasOn{"on"};

/// What the store is to remember is on the disk before the setting changes.
constexpr auto hidingDelay = 1s;

GSettings *openSettings() {
    GSettingsSchemaSource *const source = g_settings_schema_source_get_default();
    GSettingsSchema *const schema =
        source ? g_settings_schema_source_lookup(source, schemaName, TRUE) : nullptr;
    if (!schema)
        return nullptr;
    const bool hasKey = g_settings_schema_has_key(schema, banners);
    g_settings_schema_unref(schema);
    return hasKey ? g_settings_new(schemaName) : nullptr;
}

} // namespace

void NotificationBanners::Unref::operator()(GSettings *settings) const {
    g_object_unref(settings);
}

std::unique_ptr<NotificationBanners> NotificationBanners::find(UserDefaults &defaults) {
    GSettings *const settings = openSettings();
    if (!settings)
        return nullptr;
    std::unique_ptr<NotificationBanners> found(new NotificationBanners(settings, defaults));
    return g_settings_is_writable(settings, banners) ? std::move(found) : nullptr;
}

bool NotificationBanners::isOwed(const UserDefaults &defaults) {
    return defaults.objectForKey(owed).has_value();
}

NotificationBanners::NotificationBanners(GSettings *settings, UserDefaults &defaults)
    : m_settings(settings), m_defaults(defaults) {
    m_hideSoon.setSingleShot(true);
    m_hideSoon.setInterval(hidingDelay);
    QObject::connect(&m_hideSoon, &QTimer::timeout,
                     [this] { g_settings_set_boolean(m_settings.get(), banners, FALSE); });
}

NotificationBanners::~NotificationBanners() {
    g_settings_sync();
}

void NotificationBanners::hide() {
    if (isOwed(m_defaults) || !g_settings_get_boolean(m_settings.get(), banners))
        return;
    GVariant *const chosen = g_settings_get_user_value(m_settings.get(), banners);
    m_defaults.setObject(owed, QString(chosen ? wasOn : wasDefault));
    m_defaults.synchronize();
    if (chosen)
        g_variant_unref(chosen);
    m_hideSoon.start();
}

void NotificationBanners::giveBack() {
    m_hideSoon.stop();
    const auto before = m_defaults.stringForKey(owed);
    if (!before)
        return;
    // Whoever turned them on meanwhile has decided.
    if (!g_settings_get_boolean(m_settings.get(), banners)) {
        if (*before == wasDefault)
            g_settings_reset(m_settings.get(), banners);
        else
            g_settings_set_boolean(m_settings.get(), banners, TRUE);
    }
    m_defaults.removeObjectForKey(owed);
    m_defaults.synchronize();
}

} // namespace tarne
