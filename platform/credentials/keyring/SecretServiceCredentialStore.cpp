#include "platform/credentials/keyring/SecretServiceCredentialStore.h"

#include "platform/credentials/ItemName.h"
#include "platform/credentials/KeyringModule.h"
#include "platform/credentials/keyring/SecretServiceConnection.h"
#include "platform/credentials/keyring/SecretServiceDeadline.h"

#include <algorithm>
#include <memory>
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

/// Whether a collection may hold items that no search finds: it is locked, and shows none.
bool mayHideItems(const Owned<SecretCollection>& collection)
{
    if (!isLocked(collection)) {
        return false;
    }
    const std::unique_ptr<GVariant, decltype(&g_variant_unref)> items(
        g_dbus_proxy_get_cached_property(G_DBUS_PROXY(collection.get()), "Items"), &g_variant_unref);
    return !items || g_variant_n_children(items.get()) == 0;
}

/// Asks to unlock an item or a collection.
/// @throws StatusError  `errSecUserCanceled` where that was dismissed
void unlock(const Keyring& keyring, gpointer itemOrCollection)
{
    ErrorReport report;
    GList only{itemOrCollection, nullptr, nullptr};
    const auto count =
        secret_service_unlock_sync(&keyring.service, &only, keyring.cancellable, nullptr, report);
    report.require();
    if (count == 0) {
        throw StatusError{errSecUserCanceled};
    }
}

/// The default collection; or nothing where there is none, or none that shows itself.
Owned<SecretCollection> defaultCollection(const Keyring& keyring)
{
    ErrorReport ignored;
    return Owned<SecretCollection>(secret_collection_for_alias_sync(
        &keyring.service, SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, keyring.cancellable, ignored));
}

/// The collections that may hide an item: not every keyring shows what a locked one holds. Items are created
/// in the default collection; one that is known to exist may be in any.
std::vector<Owned<SecretCollection>> hidingCollections(const Keyring& keyring, bool isKnown)
{
    std::vector<Owned<SecretCollection>> collections;
    auto usual = defaultCollection(keyring);
    if (isKnown || !usual) {
        ErrorReport report;
        secret_service_load_collections_sync(&keyring.service, keyring.cancellable, report);
        report.require();
        collections = owned<SecretCollection>(secret_service_get_collections(&keyring.service));
    }
    if (usual) {
        collections.insert(collections.begin(), std::move(usual));
    }
    std::erase_if(collections, [](const auto& collection) { return !mayHideItems(collection); });
    return collections;
}

/// The item, or nothing where an open keyring has none. What is locked asks to be unlocked.
/// @throws StatusError  `errSecUserCanceled` where that was dismissed
Owned<SecretItem> findUnlocked(const Keyring& keyring, const ItemName& name, bool isKnown)
{
    auto item = find(keyring, name);
    if (!item) {
        for (const auto& collection : hidingCollections(keyring, isKnown)) {
            unlock(keyring, collection.get());
            item = find(keyring, name);
            if (item) {
                break;
            }
        }
    }
    if (item && secret_item_get_locked(item.get()) != FALSE) {
        unlock(keyring, item.get());
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

/// Replaces the item's data. @returns false where it is locked
bool setData(const Keyring& keyring, SecretItem& item, const SecretString& data)
{
    ErrorReport report;
    secret_item_set_secret_sync(&item, valueOf(data).get(), keyring.cancellable, report);
    if (report.saysLocked()) {
        return false;
    }
    report.require();
    return true;
}

/// The default collection, unlocked; or nothing.
Owned<SecretCollection> openDefaultCollection(const Keyring& keyring)
{
    auto collection = defaultCollection(keyring);
    if (collection && isLocked(collection)) {
        unlock(keyring, collection.get());
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

std::string digestOf(const SecretString& data)
{
    const std::unique_ptr<char, decltype(&g_free)> text(
        g_compute_checksum_for_data(G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(data.data()),
                                    data.size()),
        &g_free);
    return text.get();
}

} // namespace

OSStatus SecretServiceCredentialStore::copyMatching(const SecDictionary& query, SecResult& result) noexcept
{
    return inTime([&](const Keyring& keyring) {
        result.emplace<std::monostate>();
        const auto name = requireName(query);
        const bool mustExist = query.contains(kSecMatchKnownItem) || isKnown(name.account);
        if (!query.contains(kSecReturnData)) {
            if (find(keyring, name)) {
                return errSecSuccess;
            }
            return hidingCollections(keyring, mustExist).empty() ? errSecItemNotFound
                                                                 : errSecInteractionNotAllowed;
        }
        const auto item = findUnlocked(keyring, name, mustExist);
        if (!item) {
            return errSecItemNotFound;
        }
        auto data = dataOf(keyring, *item);
        if (!data) {
            return errSecInteractionNotAllowed;
        }
        note(name.account, *data);
        result = std::move(*data);
        return errSecSuccess;
    });
}

OSStatus SecretServiceCredentialStore::update(const SecDictionary& query,
                                              const SecDictionary& attributes) noexcept
{
    return inTime([&](const Keyring& keyring) {
        const auto name = requireName(query);
        const auto& data = requireData(attributes);
        const auto item = findUnlocked(keyring, name, isKnown(name.account));
        if (!item) {
            return errSecItemNotFound;
        }
        const auto stored = dataOf(keyring, *item);
        if (!stored) {
            return errSecInteractionNotAllowed; // what cannot be compared is not replaced
        }
        if (!isKnown(name.account, *stored)) {
            return errSecInvalidItemRef;
        }
        note(name.account, data); // before: a call that gets no answer may have been carried out
        if (!setData(keyring, *item, data)) { // some keyrings lock an item after each use
            unlock(keyring, item.get());
            if (!setData(keyring, *item, data)) {
                return errSecInteractionNotAllowed;
            }
        }
        requireStored(keyring, *item, data);
        return errSecSuccess;
    });
}

OSStatus SecretServiceCredentialStore::add(const SecDictionary& attributes) noexcept
{
    return inTime([&](const Keyring& keyring) {
        const auto name = requireName(attributes);
        const auto& data = requireData(attributes);
        if (findUnlocked(keyring, name, isKnown(name.account))) {
            return errSecDuplicateItem;
        }
        note(name.account, data);
        create(keyring, name, data);
        return errSecSuccess;
    });
}

OSStatus SecretServiceCredentialStore::remove(const SecDictionary&) noexcept
{
    return errSecParam;
}

bool SecretServiceCredentialStore::isKnown(std::string_view account) const
{
    return known_.contains(account);
}

bool SecretServiceCredentialStore::isKnown(std::string_view account, const SecretString& data) const
{
    const auto found = known_.find(account);
    return found != known_.end() && found->second.contains(digestOf(data));
}

void SecretServiceCredentialStore::note(std::string_view account, const SecretString& data)
{
    known_[std::string(account)].insert(digestOf(data));
}

CredentialStore* mirrowvaleKeyring()
{
    static SecretServiceCredentialStore store;
    return &store;
}

} // namespace MirrowvaleAuthenticator
