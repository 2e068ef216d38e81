#include "platform/SecretServiceCredentialStore.h"

#include "platform/ItemName.h"
#include "platform/SecretServiceConnection.h"
#include "platform/SecretServiceDeadline.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace MirrowvaleAuthenticator {

namespace {

// Items are found by class, service and account alone: not every keyring keeps the schema's name.
const SecretSchema schema = {"app.mirrowvale.authenticator.item",
                             SECRET_SCHEMA_DONT_MATCH_NAME,
                             {{"class", SECRET_SCHEMA_ATTRIBUTE_STRING},
                              {"service", SECRET_SCHEMA_ATTRIBUTE_STRING},
                              {"account", SECRET_SCHEMA_ATTRIBUTE_STRING}},
                             0,
                             nullptr,
                             nullptr,
                             nullptr,
                             nullptr,
                             nullptr,
                             nullptr,
                             nullptr};

Owned<GHashTable> attributesOf(const ItemName& name)
{
    return Owned<GHashTable>(secret_attributes_build(&schema, "class", "generic-password", "service",
                                                     std::string(name.service).c_str(), "account",
                                                     std::string(name.account).c_str(), nullptr));
}

/// The service, and what ends calls of it that take too long.
struct Keyring {
    SecretService& service;
    GCancellable* cancellable;
};

/// Runs one operation on the keyring within its time.
template <typename Operation>
OSStatus inTime(Operation operation)
{
    return statusOf([&] {
        const SecretServiceDeadline deadline;
        const auto status = statusOf([&] {
            const auto service = connectToSecretService(deadline.cancellable());
            return operation(Keyring{*service, deadline.cancellable()});
        });
        return status != errSecSuccess && deadline.hasPassed() ? errSecNotAvailable : status;
    });
}

/// Of an item whose service ends while it is being looked at, the library says that there is no such item.
void requireRunning(const Keyring& keyring)
{
    ErrorReport report;
    auto* reply =
        g_dbus_proxy_call_sync(G_DBUS_PROXY(&keyring.service), "org.freedesktop.DBus.Peer.Ping", nullptr,
                               G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, keyring.cancellable, report);
    g_clear_pointer(&reply, g_variant_unref);
    report.require();
}

template <typename Object>
std::vector<Owned<Object>> owned(GList* list)
{
    std::vector<Owned<Object>> objects;
    for (auto* entry = list; entry != nullptr; entry = entry->next) {
        objects.emplace_back(static_cast<Object*>(entry->data));
    }
    g_list_free(list);
    return objects;
}

/// The item, or nothing. Of several under the same name (in several collections, say) it is the one changed
/// last; among those, one that is open.
Owned<SecretItem> find(const Keyring& keyring, const ItemName& name)
{
    ErrorReport report;
    const auto attributes = attributesOf(name);
    auto items = owned<SecretItem>(secret_service_search_sync(
        &keyring.service, &schema, attributes.get(), SECRET_SEARCH_ALL, keyring.cancellable, report));
    if (report.saysMissing()) {
        requireRunning(keyring);
    }
    report.require();

    const auto rank = [](const Owned<SecretItem>& item) {
        return std::pair(secret_item_get_modified(item.get()), secret_item_get_locked(item.get()) == FALSE);
    };
    const auto best = std::ranges::max_element(items, {}, rank);
    return best == items.end() ? nullptr : std::move(*best);
}

bool isLocked(const Owned<SecretCollection>& collection)
{
    return secret_collection_get_locked(collection.get()) != FALSE;
}

/// Asks to unlock items or collections. @returns how many of them are open then; none: it was dismissed
template <typename Object>
std::size_t unlock(const Keyring& keyring, const std::vector<Owned<Object>>& objects)
{
    ErrorReport report;
    GList* list = nullptr;
    for (const auto& object : objects) {
        list = g_list_prepend(list, object.get());
    }
    const auto count =
        secret_service_unlock_sync(&keyring.service, list, keyring.cancellable, nullptr, report);
    g_list_free(list);
    report.require();
    return static_cast<std::size_t>(count);
}

/// The default collection; or nothing where there is none, or none that shows itself.
Owned<SecretCollection> defaultCollection(const Keyring& keyring)
{
    ErrorReport ignored;
    return Owned<SecretCollection>(secret_collection_for_alias_sync(
        &keyring.service, SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, keyring.cancellable, ignored));
}

/// The locked collections that may hold an item which no search finds: not every keyring shows what a locked
/// collection holds. It is the default one, where items are created.
/// @param isKnown  the item is known to exist: it may be in any
std::vector<Owned<SecretCollection>> lockedCollections(const Keyring& keyring, bool isKnown)
{
    std::vector<Owned<SecretCollection>> collections;
    auto usual = defaultCollection(keyring);
    if (isKnown || !usual) {
        ErrorReport report;
        secret_service_load_collections_sync(&keyring.service, keyring.cancellable, report);
        report.require();
        collections = owned<SecretCollection>(secret_service_get_collections(&keyring.service));
    } else {
        collections.push_back(std::move(usual));
    }
    std::erase_if(collections, [](const auto& collection) { return !isLocked(collection); });
    return collections;
}

/// The item, or nothing where an open keyring has none. What is locked asks to be unlocked.
/// @throws StatusError  `errSecUserCanceled` where that was dismissed
Owned<SecretItem> findUnlocked(const Keyring& keyring, const ItemName& name, bool isKnown)
{
    auto item = find(keyring, name);
    if (!item) {
        const auto locked = lockedCollections(keyring, isKnown);
        if (locked.empty()) {
            return nullptr;
        }
        const auto opened = unlock(keyring, locked);
        item = find(keyring, name);
        if (!item && opened < locked.size()) {
            throw StatusError{errSecUserCanceled};
        }
    }
    if (item && secret_item_get_locked(item.get()) != FALSE) {
        std::vector<Owned<SecretItem>> only;
        only.push_back(std::move(item));
        if (unlock(keyring, only) == 0) {
            throw StatusError{errSecUserCanceled};
        }
        item = std::move(only.front());
    }
    return item;
}

/// The item's data, or nothing where it is locked (again).
std::optional<SecretString> dataOf(const Keyring& keyring, SecretItem& item)
{
    ErrorReport report;
    secret_item_load_secret_sync(&item, keyring.cancellable, report);
    if (report.saysLocked()) {
        return std::nullopt;
    }
    report.require();
    const Owned<SecretValue> value(secret_item_get_secret(&item));
    if (!value) {
        return std::nullopt;
    }
    gsize length = 0;
    const auto* bytes = secret_value_get(value.get(), &length);
    return SecretString(bytes, length);
}

/// Not every keyring that reports success has stored the data. One that is locked by now is believed.
void requireStored(const Keyring& keyring, SecretItem& item, const SecretString& data)
{
    const auto stored = dataOf(keyring, item);
    if (stored && *stored != data) {
        throw StatusError{errSecIO};
    }
}

Owned<SecretValue> valueOf(const SecretString& data)
{
    return Owned<SecretValue>(
        secret_value_new(data.data(), static_cast<gssize>(data.size()), "text/plain; charset=utf-8"));
}

/// The default collection, unlocked; or nothing.
Owned<SecretCollection> openDefaultCollection(const Keyring& keyring)
{
    auto collection = defaultCollection(keyring);
    if (collection && isLocked(collection)) {
        std::vector<Owned<SecretCollection>> only;
        only.push_back(std::move(collection));
        if (unlock(keyring, only) == 0) {
            throw StatusError{errSecUserCanceled};
        }
        collection = std::move(only.front());
    }
    return collection;
}

/// Creates the item in that collection or, without one, under the alias of the default collection, which is
/// made where it does not exist.
/// @returns false where there is no such collection
bool createIn(SecretCollection* collection, const Keyring& keyring, const ItemName& name,
              const SecretString& data)
{
    ErrorReport report;
    const auto attributes = attributesOf(name);
    const auto label = "Mirrowvale Authenticator (" + std::string(name.account) + ")";
    const char* place = collection == nullptr ? SECRET_COLLECTION_DEFAULT
                                              : g_dbus_proxy_get_object_path(G_DBUS_PROXY(collection));
    const auto isStored =
        secret_service_store_sync(&keyring.service, &schema, attributes.get(), place, label.c_str(),
                                  valueOf(data).get(), keyring.cancellable, report);
    if (report.saysMissing()) {
        return false;
    }
    report.require();
    if (isStored == FALSE) {
        throw StatusError{errSecUserCanceled}; // a prompt, to unlock or to make the collection, was dismissed
    }
    return true;
}

void create(const Keyring& keyring, const ItemName& name, const SecretString& data)
{
    // Some keyrings name a default collection that has no alias object, or have one only under its alias.
    if (!createIn(openDefaultCollection(keyring).get(), keyring, name, data)) {
        const auto made = openDefaultCollection(keyring);
        if (!made || !createIn(made.get(), keyring, name, data)) {
            throw StatusError{errSecIO};
        }
    }
    const auto item = find(keyring, name);
    if (!item) {
        throw StatusError{errSecIO};
    }
    requireStored(keyring, *item, data);
}

} // namespace

OSStatus SecretServiceCredentialStore::copyMatching(const SecDictionary& query, SecResult& result)
{
    return inTime([&](const Keyring& keyring) {
        result.emplace<std::monostate>();
        const auto name = requireName(query);
        const bool isKnown = query.contains(kSecMatchKnownItem);
        if (!query.contains(kSecReturnData)) {
            if (find(keyring, name)) {
                return errSecSuccess;
            }
            return lockedCollections(keyring, isKnown).empty() ? errSecItemNotFound
                                                               : errSecInteractionNotAllowed;
        }
        const auto item = findUnlocked(keyring, name, isKnown);
        if (!item) {
            return errSecItemNotFound;
        }
        auto data = dataOf(keyring, *item);
        if (!data) {
            return errSecInteractionNotAllowed;
        }
        result = std::move(*data);
        return errSecSuccess;
    });
}

OSStatus SecretServiceCredentialStore::update(const SecDictionary& query, const SecDictionary& attributes)
{
    return inTime([&](const Keyring& keyring) {
        const auto name = requireName(query);
        const auto& data = requireData(attributes);
        const auto item = findUnlocked(keyring, name, false);
        if (!item) {
            return errSecItemNotFound;
        }
        ErrorReport report;
        secret_item_set_secret_sync(item.get(), valueOf(data).get(), keyring.cancellable, report);
        report.require();
        requireStored(keyring, *item, data);
        return errSecSuccess;
    });
}

OSStatus SecretServiceCredentialStore::add(const SecDictionary& attributes)
{
    return inTime([&](const Keyring& keyring) {
        const auto name = requireName(attributes);
        const auto& data = requireData(attributes);
        if (findUnlocked(keyring, name, false)) {
            return errSecDuplicateItem;
        }
        create(keyring, name, data);
        return errSecSuccess;
    });
}

CredentialStore* mirrowvaleKeyring()
{
    static SecretServiceCredentialStore store;
    return &store;
}

} // namespace MirrowvaleAuthenticator
