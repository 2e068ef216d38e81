#include "platform/SecretServiceCredentialStore.h"

#include "platform/ItemName.h"
#include "platform/SecretServiceConnection.h"

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

/// Of an item whose service ends while it is being looked at, the library says that there is no such item.
void requireRunning(SecretService& service)
{
    ErrorReport report;
    auto* reply = g_dbus_proxy_call_sync(G_DBUS_PROXY(&service), "org.freedesktop.DBus.Peer.Ping", nullptr,
                                         G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, report);
    g_clear_pointer(&reply, g_variant_unref);
    report.require();
}

/// The item, or nothing. Of several under the same name (in several collections, say) it is the one changed
/// last; among those, one that is open.
Owned<SecretItem> find(SecretService& service, const ItemName& name)
{
    ErrorReport report;
    const auto attributes = attributesOf(name);
    GList* list =
        secret_service_search_sync(&service, &schema, attributes.get(), SECRET_SEARCH_ALL, nullptr, report);
    std::vector<Owned<SecretItem>> items;
    for (auto* entry = list; entry != nullptr; entry = entry->next) {
        items.emplace_back(static_cast<SecretItem*>(entry->data));
    }
    g_list_free(list);
    if (report.saysMissing()) {
        requireRunning(service);
    }
    report.require();

    const auto rank = [](const Owned<SecretItem>& item) {
        return std::pair(secret_item_get_modified(item.get()), secret_item_get_locked(item.get()) == FALSE);
    };
    const auto best = std::ranges::max_element(items, {}, rank);
    return best == items.end() ? nullptr : std::move(*best);
}

void unlock(SecretService& service, gpointer itemOrCollection)
{
    ErrorReport report;
    GList only{itemOrCollection, nullptr, nullptr};
    const auto count = secret_service_unlock_sync(&service, &only, nullptr, nullptr, report);
    report.require();
    if (count == 0) {
        throw StatusError{errSecUserCanceled}; // the prompt was dismissed
    }
}

Owned<SecretItem> requireItem(SecretService& service, const ItemName& name)
{
    auto item = find(service, name);
    if (!item) {
        throw StatusError{errSecItemNotFound};
    }
    if (secret_item_get_locked(item.get()) != FALSE) {
        unlock(service, item.get());
    }
    return item;
}

/// The item's data, or nothing where it is locked (again).
std::optional<SecretString> dataOf(SecretItem& item)
{
    ErrorReport report;
    secret_item_load_secret_sync(&item, nullptr, report);
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
void requireStored(SecretItem& item, const SecretString& data)
{
    const auto stored = dataOf(item);
    if (stored && *stored != data) {
        throw StatusError{errSecIO};
    }
}

Owned<SecretValue> valueOf(const SecretString& data)
{
    return Owned<SecretValue>(
        secret_value_new(data.data(), static_cast<gssize>(data.size()), "text/plain; charset=utf-8"));
}

/// The default collection, unlocked; or nothing where there is none, or none that shows itself.
Owned<SecretCollection> defaultCollection(SecretService& service)
{
    ErrorReport ignored;
    Owned<SecretCollection> collection(secret_collection_for_alias_sync(
        &service, SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, nullptr, ignored));
    if (collection && secret_collection_get_locked(collection.get()) != FALSE) {
        unlock(service, collection.get());
    }
    return collection;
}

/// Creates the item in that collection or, without one, under the alias of the default collection, which is
/// made where it does not exist.
/// @returns false where there is no such collection
bool createIn(SecretCollection* collection, SecretService& service, const ItemName& name,
              const SecretString& data)
{
    ErrorReport report;
    const auto attributes = attributesOf(name);
    const auto label = "Mirrowvale Authenticator (" + std::string(name.account) + ")";
    const char* place = collection == nullptr ? SECRET_COLLECTION_DEFAULT
                                              : g_dbus_proxy_get_object_path(G_DBUS_PROXY(collection));
    const auto isStored = secret_service_store_sync(&service, &schema, attributes.get(), place, label.c_str(),
                                                    valueOf(data).get(), nullptr, report);
    if (report.saysMissing()) {
        return false;
    }
    report.require();
    if (isStored == FALSE) {
        throw StatusError{errSecUserCanceled}; // a prompt, to unlock or to make the collection, was dismissed
    }
    return true;
}

void create(SecretService& service, const ItemName& name, const SecretString& data)
{
    // Some keyrings name a default collection that has no alias object, or have one only under its alias.
    if (!createIn(defaultCollection(service).get(), service, name, data)) {
        const auto made = defaultCollection(service);
        if (!made || !createIn(made.get(), service, name, data)) {
            throw StatusError{errSecIO};
        }
    }
    const auto item = find(service, name);
    if (!item) {
        throw StatusError{errSecIO};
    }
    requireStored(*item, data);
}

} // namespace

OSStatus SecretServiceCredentialStore::copyMatching(const SecDictionary& query, SecResult& result)
{
    return statusOf([&] {
        result.emplace<std::monostate>();
        const auto name = requireName(query);
        const auto service = connectToSecretService();
        if (!query.contains(kSecReturnData)) {
            return find(*service, name) ? errSecSuccess : errSecItemNotFound;
        }
        auto data = dataOf(*requireItem(*service, name));
        if (!data) {
            return errSecInteractionNotAllowed;
        }
        result = std::move(*data);
        return errSecSuccess;
    });
}

OSStatus SecretServiceCredentialStore::update(const SecDictionary& query, const SecDictionary& attributes)
{
    return statusOf([&] {
        const auto name = requireName(query);
        const auto& data = requireData(attributes);
        const auto service = connectToSecretService();
        const auto item = requireItem(*service, name);
        ErrorReport report;
        secret_item_set_secret_sync(item.get(), valueOf(data).get(), nullptr, report);
        report.require();
        requireStored(*item, data);
        return errSecSuccess;
    });
}

OSStatus SecretServiceCredentialStore::add(const SecDictionary& attributes)
{
    return statusOf([&] {
        const auto name = requireName(attributes);
        const auto& data = requireData(attributes);
        const auto service = connectToSecretService();
        if (find(*service, name)) {
            return errSecDuplicateItem;
        }
        create(*service, name, data);
        return errSecSuccess;
    });
}

CredentialStore* mirrowvaleKeyring()
{
    static SecretServiceCredentialStore store;
    return &store;
}

} // namespace MirrowvaleAuthenticator
