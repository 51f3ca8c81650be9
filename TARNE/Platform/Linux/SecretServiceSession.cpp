#include "SecretServiceSession.h"

#include <libsecret/secret.h>

namespace tarne {

namespace {

struct Release {
    void operator()(void *object) const { g_object_unref(object); }
    void operator()(GHashTable *table) const { g_hash_table_unref(table); }
    void operator()(SecretValue *value) const { secret_value_unref(value); }
    void operator()(GError *error) const { g_error_free(error); }
};

template <typename T>
using Owned = std::unique_ptr<T, Release>;

/// Receives a call's error and drops it: no code of the store reaches anybody.
class IgnoredError {
public:
    ~IgnoredError() { g_clear_error(&m_error); }
    GError **out() { return &m_error; }
    bool isSet() const { return m_error != nullptr; }

private:
    GError *m_error = nullptr;
};

/// The name is not matched, so that items planted by other tools are found as well.
const SecretSchema *schema() {
    static const SecretSchema *const instance = secret_schema_new(
        "com.tarne.app.Secret", SECRET_SCHEMA_DONT_MATCH_NAME, "service",
        SECRET_SCHEMA_ATTRIBUTE_STRING, "account", SECRET_SCHEMA_ATTRIBUTE_STRING, nullptr);
    return instance;
}

Owned<GHashTable> attributes(const QString &service, const QString &account) {
    return Owned<GHashTable>(secret_attributes_build(schema(), "service",
                                                     service.toUtf8().constData(), "account",
                                                     account.toUtf8().constData(), nullptr));
}

/// The session bus, whose end must not end us as GLib would have it.
Owned<GDBusConnection> sessionBus(GCancellable *cancellable) {
    IgnoredError error;
    Owned<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, error.out()));
    if (bus)
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    return bus;
}

} // namespace

class SecretServiceSession::Private {
public:
    using Items = std::vector<Owned<SecretItem>>;

    Private(GCancellable *toWatch, Prompt toAsk)
        : cancellable(toWatch), prompt(std::move(toAsk)), bus(sessionBus(cancellable)) {
        IgnoredError error;
        // A service opened anew for each operation survives any restart of the daemon.
        if (bus)
            service.reset(secret_service_open_sync(SECRET_TYPE_SERVICE, nullptr,
                                                   SECRET_SERVICE_OPEN_SESSION, cancellable,
                                                   error.out()));
    }

    /// Absent when the service does not answer.
    std::optional<Items> search(const Owned<GHashTable> &address) const {
        if (!service)
            return std::nullopt;
        IgnoredError error;
        GList *const found = secret_service_search_sync(
            service.get(), schema(), address.get(), SECRET_SEARCH_ALL, cancellable, error.out());
        if (error.isSet())
            return std::nullopt;
        Items items;
        for (const GList *item = found; item; item = item->next)
            items.emplace_back(SECRET_ITEM(item->data));
        g_list_free(found);
        return items;
    }

    /// Asks the user where it must; true when `object` is open and somebody still waits.
    bool unlock(GDBusProxy *object) const {
        gint unlocked = 0;
        const bool awaited = prompt([&] {
            IgnoredError error;
            GList only{object, nullptr, nullptr};
            unlocked =
                secret_service_unlock_sync(service.get(), &only, nullptr, nullptr, error.out());
        });
        return awaited && unlocked > 0;
    }

    bool open(SecretItem *item) const {
        return !secret_item_get_locked(item) || unlock(G_DBUS_PROXY(item));
    }

    /// The default collection, unlocked; made where there is none. Empty when the user or the
    /// service refuses.
    Owned<SecretCollection> openCollection() const {
        IgnoredError error;
        Owned<SecretCollection> collection(
            secret_collection_for_alias_sync(service.get(), SECRET_COLLECTION_DEFAULT,
                                             SECRET_COLLECTION_NONE, cancellable, error.out()));
        if (error.isSet())
            return nullptr;
        if (!collection) {
            const bool awaited = prompt([&] {
                IgnoredError refusal;
                collection.reset(secret_collection_create_sync(
                    service.get(), "Default", SECRET_COLLECTION_DEFAULT,
                    SECRET_COLLECTION_CREATE_NONE, nullptr, refusal.out()));
            });
            return awaited ? std::move(collection) : nullptr;
        }
        if (secret_collection_get_locked(collection.get()) &&
            !unlock(G_DBUS_PROXY(collection.get())))
            return nullptr;
        return collection;
    }

    GCancellable *cancellable;
    Prompt prompt;
    Owned<GDBusConnection> bus;
    Owned<SecretService> service;
};

SecretServiceSession::SecretServiceSession(GCancellable *cancellable, Prompt prompt)
    : d(std::make_unique<Private>(cancellable, std::move(prompt))) {}

SecretServiceSession::~SecretServiceSession() = default;

bool SecretServiceSession::add(const QString &service, const QString &account,
                               const QByteArray &secret) {
    const auto address = attributes(service, account);
    const auto existing = d->search(address);
    if (!existing || !existing->empty())
        return false;
    const auto collection = d->openCollection();
    if (!collection)
        return false;
    const Owned<SecretValue> value(
        secret_value_new(secret.constData(), secret.size(), "text/plain"));
    const QByteArray label = "TARNE: " + account.toUtf8();
    IgnoredError error;
    const Owned<SecretItem> item(
        secret_item_create_sync(collection.get(), schema(), address.get(), label.constData(),
                                value.get(), SECRET_ITEM_CREATE_NONE, d->cancellable, error.out()));
    return item != nullptr;
}

Keychain::Removal SecretServiceSession::remove(const QString &service, const QString &account) {
    const auto items = d->search(attributes(service, account));
    if (!items)
        return Keychain::Removal::Failed;
    if (items->empty())
        return Keychain::Removal::NotFound;
    for (const auto &item : *items) {
        IgnoredError error;
        if (!d->open(item.get()) ||
            !secret_item_delete_sync(item.get(), d->cancellable, error.out()))
            return Keychain::Removal::Failed;
    }
    return Keychain::Removal::Removed;
}

std::optional<QByteArray> SecretServiceSession::copy(const QString &service,
                                                     const QString &account) {
    const auto items = d->search(attributes(service, account));
    if (!items || items->empty() || !d->open(items->front().get()))
        return std::nullopt;
    SecretItem *const item = items->front().get();
    IgnoredError error;
    if (!secret_item_load_secret_sync(item, d->cancellable, error.out()))
        return std::nullopt;
    const Owned<SecretValue> value(secret_item_get_secret(item));
    if (!value)
        return std::nullopt;
    gsize size = 0;
    const gchar *bytes = secret_value_get(value.get(), &size);
    return QByteArray(bytes, static_cast<qsizetype>(size));
}

} // namespace tarne
