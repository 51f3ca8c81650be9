#include "SecretServiceSession.h"

#include <libsecret/secret.h>

#include <string_view>

namespace tarne {

namespace {

struct Release {
    void operator()(void *object) const { g_object_unref(object); }
    void operator()(GHashTable *table) const { g_hash_table_unref(table); }
    void operator()(SecretValue *value) const { secret_value_unref(value); }
    void operator()(GMainContext *context) const { g_main_context_unref(context); }
    void operator()(GVariant *variant) const { g_variant_unref(variant); }
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

/// What the calls of one conversation leave to be done, on the thread that makes them. Left to the
/// main loop, it would keep hold of a connection whose bus has ended, and so of the next one.
class CallContext {
public:
    CallContext() : m_context(g_main_context_new()) {
        g_main_context_push_thread_default(m_context.get());
    }
    ~CallContext() {
        while (g_main_context_iteration(m_context.get(), FALSE)) {
        }
        g_main_context_pop_thread_default(m_context.get());
    }
    CallContext(const CallContext &) = delete;
    CallContext &operator=(const CallContext &) = delete;

    void waitForEvent() { g_main_context_iteration(m_context.get(), TRUE); }

private:
    Owned<GMainContext> m_context;
};

constexpr const char *serviceName = "org.freedesktop.secrets";

/// The session bus, whose end must not end us as GLib would have it.
Owned<GDBusConnection> sessionBus(GCancellable *cancellable) {
    IgnoredError error;
    Owned<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable, error.out()));
    if (bus)
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    return bus && !g_dbus_connection_is_closed(bus.get()) ? std::move(bus) : nullptr;
}

/// A service opened anew for each operation survives any restart of the daemon.
Owned<SecretService> openService(GCancellable *cancellable) {
    IgnoredError error;
    return Owned<SecretService>(secret_service_open_sync(
        SECRET_TYPE_SERVICE, nullptr, SECRET_SERVICE_OPEN_SESSION, cancellable, error.out()));
}

/// A question of the key store to the user, for as long as the store that asks it is there. The
/// library would wait for ever for the answer when the store crashes meanwhile.
class Question {
public:
    /// `path` is the prompt's.
    Question(GDBusConnection *bus, const char *path, CallContext &context)
        : m_bus(bus), m_path(path), m_context(context) {
        m_answer = g_dbus_connection_signal_subscribe(
            bus, serviceName, promptInterface, "Completed", path, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
            &answered, this, nullptr);
        m_watch = g_bus_watch_name_on_connection(bus, serviceName, G_BUS_NAME_WATCHER_FLAGS_NONE,
                                                 nullptr, &vanished, this, nullptr);
    }
    ~Question() {
        g_bus_unwatch_name(m_watch);
        g_dbus_connection_signal_unsubscribe(m_bus, m_answer);
    }
    Question(const Question &) = delete;
    Question &operator=(const Question &) = delete;

    /// True when the user agreed.
    bool ask() {
        IgnoredError error;
        const Owned<GVariant> shown(g_dbus_connection_call_sync(
            m_bus, serviceName, m_path, promptInterface, "Prompt", g_variant_new("(s)", ""),
            nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, error.out()));
        while (shown && !m_isOver)
            m_context.waitForEvent();
        return m_isAgreed;
    }

private:
    static constexpr const char *promptInterface = "org.freedesktop.Secret.Prompt";

    static void answered(GDBusConnection *, const char *, const char *, const char *, const char *,
                         GVariant *arguments, gpointer question) {
        gboolean isDismissed = TRUE;
        g_variant_get_child(arguments, 0, "b", &isDismissed);
        static_cast<Question *>(question)->end(!isDismissed);
    }
    static void vanished(GDBusConnection *, const char *, gpointer question) {
        static_cast<Question *>(question)->end(false);
    }
    void end(bool isAgreed) {
        m_isAgreed = m_isAgreed || isAgreed;
        m_isOver = true;
    }

    GDBusConnection *m_bus;
    const char *m_path;
    CallContext &m_context;
    guint m_answer = 0;
    guint m_watch = 0;
    bool m_isOver = false;
    bool m_isAgreed = false;
};

} // namespace

class SecretServiceSession::Private {
public:
    using Items = std::vector<Owned<SecretItem>>;

    Private(GCancellable *toWatch, Prompt toAsk)
        : cancellable(toWatch),
          prompt(std::move(toAsk)),
          bus(sessionBus(cancellable)),
          service(bus ? openService(cancellable) : nullptr) {}

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

    /// Calls a method of the service whose last result is the path of a prompt. Asks the user where
    /// there is one; true when nothing speaks against it and somebody still waits.
    bool call(const char *method, GVariant *arguments, const char *promptFormat) const {
        IgnoredError error;
        const Owned<GVariant> reply(g_dbus_connection_call_sync(
            bus.get(), serviceName, "/org/freedesktop/secrets", "org.freedesktop.Secret.Service",
            method, arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, cancellable, error.out()));
        if (!reply)
            return false;
        const char *path = nullptr;
        g_variant_get(reply.get(), promptFormat, nullptr, &path);
        if (std::string_view(path) == "/")
            return true;
        bool isAgreed = false;
        const bool isAwaited = prompt([&] { isAgreed = Question(bus.get(), path, context).ask(); });
        return isAwaited && isAgreed;
    }

    bool unlock(GDBusProxy *object) const {
        const char *const path = g_dbus_proxy_get_object_path(object);
        return call("Unlock", g_variant_new("(@ao)", g_variant_new_objv(&path, 1)), "(@ao&o)");
    }

    bool open(SecretItem *item) const {
        return !secret_item_get_locked(item) || unlock(G_DBUS_PROXY(item));
    }

    Owned<SecretCollection> defaultCollection() const {
        IgnoredError error;
        return Owned<SecretCollection>(
            secret_collection_for_alias_sync(service.get(), SECRET_COLLECTION_DEFAULT,
                                             SECRET_COLLECTION_NONE, cancellable, error.out()));
    }

    bool makeDefaultCollection() const {
        GVariantBuilder properties;
        g_variant_builder_init(&properties, G_VARIANT_TYPE_VARDICT);
        g_variant_builder_add(&properties, "{sv}", "org.freedesktop.Secret.Collection.Label",
                              g_variant_new_string("Default"));
        return call("CreateCollection",
                    g_variant_new("(a{sv}s)", &properties, SECRET_COLLECTION_DEFAULT), "(@o&o)");
    }

    /// The default collection, unlocked; made where there is none. Empty when the user or the
    /// service refuses.
    Owned<SecretCollection> openCollection() const {
        auto collection = defaultCollection();
        if (!collection && makeDefaultCollection())
            collection = defaultCollection();
        if (collection && secret_collection_get_locked(collection.get()) &&
            !unlock(G_DBUS_PROXY(collection.get())))
            return nullptr;
        return collection;
    }

    mutable CallContext context;
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
