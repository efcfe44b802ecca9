#include <VarnelSecurity/Linux/SecretServiceCalls.h>

#include <libsecret/secret.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace Varnel::SecretServiceCalls {

namespace {
constexpr char serviceName[] = "org.freedesktop.secrets";

template <typename T>
using Owned = std::shared_ptr<T>;

/// Takes over the caller's reference.
template <typename T>
Owned<T> owned(T* object) {
    return Owned<T>(object, [](T* held) { g_clear_object(&held); });
}

/// Keeps what a call subscribes to on the bus away from the main thread's event loop.
class OwnMainContext {
public:
    OwnMainContext() { g_main_context_push_thread_default(m_context); }
    ~OwnMainContext() {
        // What was unsubscribed is freed from the loop of the context only.
        while (g_main_context_iteration(m_context, FALSE)) {
        }
        g_main_context_pop_thread_default(m_context);
        g_main_context_unref(m_context);
    }
    OwnMainContext(const OwnMainContext&) = delete;
    OwnMainContext& operator=(const OwnMainContext&) = delete;

private:
    GMainContext* m_context = g_main_context_new();
};

/// One call's connection to the Secret Service. What it found must be released before it.
class Connection {
public:
    explicit Connection(const std::stop_token& stop)
        : m_cancelOnStop(stop, [this] { g_cancellable_cancel(cancellable()); }) {
        open();
    }

    /// Anything but success: there is no `service`.
    KeychainStatus status() const { return m_status; }
    SecretService* service() const { return m_service.get(); }
    GCancellable* cancellable() const { return m_cancellable.get(); }

private:
    void open();
    KeychainStatus availability(GDBusConnection* bus) const;
    Owned<GVariant> askBus(GDBusConnection* bus, const char* method, GVariant* arguments) const;

    OwnMainContext m_context;
    Owned<GCancellable> m_cancellable = owned(g_cancellable_new());
    std::stop_callback<std::function<void()>> m_cancelOnStop;
    Owned<SecretService> m_service;
    KeychainStatus m_status = keychainSuccess;
};

KeychainStatus statusOf(const GError* error) {
    const bool isLocked = g_error_matches(error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED) != FALSE;
    return isLocked ? keychainInteractionNotAllowed : keychainServiceNotResponding;
}

void Connection::open() {
    const auto bus = owned(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable(), nullptr));
    if (!bus) {
        m_status = keychainNotAvailable;
        return;
    }
    g_dbus_connection_set_exit_on_close(bus.get(), FALSE); // the end of the bus is not the end of the program
    m_status = availability(bus.get());
    if (m_status == keychainSuccess) {
        g_autoptr(GError) error = nullptr;
        m_service = owned(
            secret_service_open_sync(SECRET_TYPE_SERVICE, serviceName, SECRET_SERVICE_NONE, cancellable(), &error));
        m_status = m_service ? keychainSuccess : statusOf(error);
    }
}

KeychainStatus Connection::availability(GDBusConnection* bus) const {
    const auto owner = askBus(bus, "NameHasOwner", g_variant_new("(s)", serviceName));
    const auto startable = askBus(bus, "ListActivatableNames", nullptr);
    if (!owner || !startable) {
        return keychainServiceNotResponding;
    }
    gboolean isOwned = FALSE;
    g_variant_get(owner.get(), "(b)", &isOwned);
    g_autofree const char** names = nullptr;
    g_variant_get(startable.get(), "(^a&s)", &names);
    return isOwned || g_strv_contains(names, serviceName) ? keychainSuccess : keychainNotAvailable;
}

/// Null when the bus gave no answer.
Owned<GVariant> Connection::askBus(GDBusConnection* bus, const char* method, GVariant* arguments) const {
    constexpr const char* busName = "org.freedesktop.DBus";
    constexpr int defaultTimeout = -1;
    GVariant* reply =
        g_dbus_connection_call_sync(bus, busName, "/org/freedesktop/DBus", busName, method, arguments, nullptr,
                                    G_DBUS_CALL_FLAGS_NONE, defaultTimeout, cancellable(), nullptr);
    return Owned<GVariant>(reply, [](GVariant* held) { g_clear_pointer(&held, g_variant_unref); });
}

Owned<GHashTable> attributesOf(const KeychainQuery& query) {
    GHashTable* attributes = g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free);
    const auto insert = [attributes](const char* name, const QString& value) {
        g_hash_table_insert(attributes, g_strdup(name), g_strdup(value.toUtf8().constData()));
    };
    insert("service", query.service);
    insert("account", query.account);
    return Owned<GHashTable>(attributes, g_hash_table_unref);
}

struct Found {
    KeychainStatus status = keychainSuccess; ///< of the search, not of what it found
    std::vector<Owned<SecretItem>> unlocked;
    std::vector<Owned<SecretItem>> locked;

    bool isEmpty() const { return unlocked.empty() && locked.empty(); }
};

/// Searches without a schema, by the attributes alone, and without the flag that unlocks: nobody is asked.
Found search(const Connection& connection, const KeychainQuery& query) {
    constexpr auto flags = static_cast<SecretSearchFlags>(SECRET_SEARCH_ALL | SECRET_SEARCH_LOAD_SECRETS);
    g_autoptr(GError) error = nullptr;
    g_autoptr(GList) items = secret_service_search_sync(connection.service(), nullptr, attributesOf(query).get(), flags,
                                                        connection.cancellable(), &error);
    Found found;
    found.status = error ? statusOf(error) : keychainSuccess;
    for (const GList* entry = items; entry; entry = entry->next) {
        auto* item = SECRET_ITEM(entry->data);
        (secret_item_get_locked(item) ? found.locked : found.unlocked).push_back(owned(item));
    }
    return found;
}

/// The collection for new items; null when there is none.
Owned<SecretCollection> defaultCollection(const Connection& connection) {
    return owned(secret_collection_for_alias_sync(connection.service(), SECRET_COLLECTION_DEFAULT,
                                                  SECRET_COLLECTION_NONE, connection.cancellable(), nullptr));
}

bool isLocked(const Owned<SecretCollection>& collection) {
    return collection && secret_collection_get_locked(collection.get());
}

/// What a search means that found no unlocked item. A service need not tell what a locked collection holds.
KeychainStatus statusWithoutItem(const Connection& connection, const Found& found) {
    if (found.status != keychainSuccess) {
        return found.status;
    }
    const bool mayBeLocked = !found.locked.empty() || isLocked(defaultCollection(connection));
    return mayBeLocked ? keychainInteractionNotAllowed : keychainItemNotFound;
}

std::optional<QByteArray> dataOf(SecretItem* item) {
    SecretValue* value = secret_item_get_secret(item);
    if (!value) {
        return std::nullopt;
    }
    gsize length = 0;
    const char* bytes = secret_value_get(value, &length);
    QByteArray data(bytes, static_cast<qsizetype>(length));
    secret_value_unref(value);
    return data;
}

/// What stands in the way of an access.
struct Obstacles {
    KeychainStatus status = keychainSuccess;
    std::vector<Owned<GObject>> locked; ///< items and collections
    bool lacksCollection = false;

    bool isEmpty() const { return locked.empty() && !lacksCollection; }
};

template <typename T>
Owned<GObject> asObject(const Owned<T>& object) {
    return Owned<GObject>(object, G_OBJECT(object.get()));
}

Obstacles findObstacles(const Connection& connection, const KeychainQuery& query, KeychainAccess access) {
    if (connection.status() != keychainSuccess) {
        return {connection.status(), {}, false};
    }
    const Found found = search(connection, query);
    Obstacles obstacles{found.status, {}, false};
    std::transform(found.locked.begin(), found.locked.end(), std::back_inserter(obstacles.locked),
                   asObject<SecretItem>);
    const auto collection = defaultCollection(connection);
    const bool isWriting = access == KeychainAccess::writing;
    if (isLocked(collection) && (isWriting || found.isEmpty())) {
        obstacles.locked.push_back(asObject(collection));
    }
    obstacles.lacksCollection = isWriting && !collection;
    return obstacles;
}
} // namespace

KeychainStatus store(const std::stop_token& stop, const KeychainQuery& query, const QByteArray& data) {
    const Connection connection(stop);
    if (connection.status() != keychainSuccess) {
        return connection.status();
    }
    // Storing into a collection that is locked or not there would ask the user.
    const auto collection = defaultCollection(connection);
    if (!collection || isLocked(collection)) {
        return keychainInteractionNotAllowed;
    }
    const Owned<SecretValue> value(secret_value_new(data.constData(), data.size(), "text/plain"), secret_value_unref);
    g_autoptr(GError) error = nullptr;
    const bool stored =
        secret_service_store_sync(connection.service(), nullptr, attributesOf(query).get(), SECRET_COLLECTION_DEFAULT,
                                  "Varnel", value.get(), connection.cancellable(), &error) != FALSE;
    return stored ? keychainSuccess : statusOf(error);
}

KeychainMatch read(const std::stop_token& stop, const KeychainQuery& query) {
    const Connection connection(stop);
    if (connection.status() != keychainSuccess) {
        return {connection.status(), {}};
    }
    const Found found = search(connection, query);
    const auto isOlder = [](const auto& one, const auto& other) {
        return secret_item_get_modified(one.get()) < secret_item_get_modified(other.get());
    };
    const auto newest = std::max_element(found.unlocked.begin(), found.unlocked.end(), isOlder);
    if (newest == found.unlocked.end()) {
        return {statusWithoutItem(connection, found), {}};
    }
    return {keychainSuccess, dataOf(newest->get())};
}

KeychainStatus remove(const std::stop_token& stop, const KeychainQuery& query) {
    const Connection connection(stop);
    if (connection.status() != keychainSuccess) {
        return connection.status();
    }
    const Found found = search(connection, query);
    for (const auto& item : found.unlocked) {
        g_autoptr(GError) error = nullptr;
        if (!secret_item_delete_sync(item.get(), connection.cancellable(), &error)) {
            return statusOf(error);
        }
    }
    const bool allGone = !found.unlocked.empty() && found.locked.empty();
    return allGone ? keychainSuccess : statusWithoutItem(connection, found);
}

KeychainStatus check(const std::stop_token& stop, const KeychainQuery& query, KeychainAccess access) {
    const Connection connection(stop);
    const Obstacles obstacles = findObstacles(connection, query, access);
    const bool isFree = obstacles.status != keychainSuccess || obstacles.isEmpty();
    return isFree ? obstacles.status : keychainInteractionNotAllowed;
}

bool ask(const KeychainQuery& query, KeychainAccess access) {
    const Connection connection({});
    const Obstacles obstacles = findObstacles(connection, query, access);
    if (obstacles.lacksCollection) {
        const auto made =
            owned(secret_collection_create_sync(connection.service(), "Default keyring", SECRET_COLLECTION_DEFAULT,
                                                SECRET_COLLECTION_CREATE_NONE, connection.cancellable(), nullptr));
        if (!made) {
            return false;
        }
    }
    g_autoptr(GList) objects = nullptr;
    for (const auto& object : obstacles.locked) {
        objects = g_list_prepend(objects, object.get());
    }
    if (objects) {
        secret_service_unlock_sync(connection.service(), objects, connection.cancellable(), nullptr, nullptr);
    }
    const Obstacles left = findObstacles(connection, query, access);
    return left.status == keychainSuccess && left.isEmpty();
}

} // namespace Varnel::SecretServiceCalls
