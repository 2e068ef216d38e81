#include "platform/credentials/keyring/SecretServiceItems.h"

#include "platform/credentials/keyring/ErrorReport.h"

#include <algorithm>
#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

// Items are found by class, service and account alone: not every keyring stores the schema's name.
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

bool isLocked(const Owned<SecretCollection>& collection)
{
    return secret_collection_get_locked(collection.get()) != FALSE;
}

Owned<SecretValue> valueOf(const SecretString& data)
{
    return Owned<SecretValue>(
        secret_value_new(data.data(), static_cast<gssize>(data.size()), "text/plain; charset=utf-8"));
}

/// A new item's properties, by name. The schema's name is among the attributes, as the library adds it itself
/// elsewhere.
Owned<GHashTable> itemProperties(const std::string& label, GHashTable* attributes)
{
    GVariantBuilder builder;
    g_variant_builder_init(&builder, G_VARIANT_TYPE("a{ss}"));
    g_variant_builder_add(&builder, "{ss}", "xdg:schema", schema.name);
    GHashTableIter entries;
    gpointer key = nullptr;
    gpointer value = nullptr;
    for (g_hash_table_iter_init(&entries, attributes);
         g_hash_table_iter_next(&entries, &key, &value) != FALSE;) {
        g_variant_builder_add(&builder, "{ss}", key, value);
    }
    Owned<GHashTable> properties(g_hash_table_new_full(g_str_hash, g_str_equal, g_free,
                                                       reinterpret_cast<GDestroyNotify>(g_variant_unref)));
    const auto add = [&](const char* name, GVariant* property) {
        g_hash_table_insert(properties.get(), g_strdup(name), g_variant_ref_sink(property));
    };
    add("org.freedesktop.Secret.Item.Label", g_variant_new_string(label.c_str()));
    add("org.freedesktop.Secret.Item.Attributes", g_variant_builder_end(&builder));
    return properties;
}

} // namespace

SecretServiceItems::SecretServiceItems(SecretServiceOperation& operation, const ItemName& name)
    : operation_(operation),
      label_("Mirrowvale Authenticator (" + name.account + ")"),
      attributes_(secret_attributes_build(&schema, "class", "generic-password", "service",
                                          name.service.c_str(), "account", name.account.c_str(), nullptr))
{
}

Owned<SecretItem> SecretServiceItems::find() const
{
    ErrorReport report;
    const auto answer = operation_.wait([&](auto... rest) {
        secret_service_search(operation_.service(), &schema, attributes_.get(), SECRET_SEARCH_ALL, rest...);
    });
    auto items = owned<SecretItem>(secret_service_search_finish(operation_.service(), answer.get(), report));
    if (report.saysMissing()) {
        operation_.requireService();
    }
    report.require();

    const auto rank = [](const Owned<SecretItem>& item) {
        return std::pair(secret_item_get_modified(item.get()), secret_item_get_locked(item.get()) == FALSE);
    };
    const auto best = std::ranges::max_element(items, {}, rank);
    return best == items.end() ? nullptr : std::move(*best);
}

Owned<SecretItem> SecretServiceItems::findUnlocked(Search search) const
{
    auto item = find();
    if (!item) {
        for (const auto& collection : lockedCollections(search)) {
            unlock(collection.get());
            item = find();
            if (item) {
                break;
            }
        }
    }
    if (item && secret_item_get_locked(item.get()) != FALSE) {
        unlock(item.get());
    }
    return item;
}

void SecretServiceItems::unlock(gpointer itemOrCollection) const
{
    ErrorReport report;
    GList only{itemOrCollection, nullptr, nullptr};
    const auto answer =
        operation_.wait([&](auto... rest) { secret_service_unlock(operation_.service(), &only, rest...); });
    const auto count = secret_service_unlock_finish(operation_.service(), answer.get(), nullptr, report);
    report.require();
    if (count == 0) {
        throw StatusError{errSecUserCanceled};
    }
}

/// The default collection; or nothing where there is none. Some keyrings show it only under its alias.
Owned<SecretCollection> SecretServiceItems::defaultCollection() const
{
    ErrorReport ignored;
    auto answer = operation_.wait([&](auto... rest) {
        secret_collection_for_alias(operation_.service(), SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE,
                                    rest...);
    });
    Owned<SecretCollection> collection(secret_collection_for_alias_finish(answer.get(), ignored));
    if (!collection) {
        ErrorReport alsoIgnored;
        answer = operation_.wait([&](auto... rest) {
            secret_collection_new_for_dbus_path(operation_.service(),
                                                "/org/freedesktop/secrets/aliases/default",
                                                SECRET_COLLECTION_NONE, rest...);
        });
        collection.reset(secret_collection_new_for_dbus_path_finish(answer.get(), alsoIgnored));
    }
    return collection;
}

/// The collections whose silence says nothing, since not every keyring finds what a locked one holds. Items
/// are made in the default collection; one that is known to exist may be in any.
std::vector<Owned<SecretCollection>> SecretServiceItems::lockedCollections(Search search) const
{
    std::vector<Owned<SecretCollection>> collections;
    auto usual = defaultCollection();
    if (search == Search::thorough || !usual) {
        ErrorReport report;
        const auto answer = operation_.wait(
            [&](auto... rest) { secret_service_load_collections(operation_.service(), rest...); });
        secret_service_load_collections_finish(operation_.service(), answer.get(), report);
        report.require();
        collections = owned<SecretCollection>(secret_service_get_collections(operation_.service()));
    }
    if (usual) {
        collections.insert(collections.begin(), std::move(usual));
    }
    std::erase_if(collections, [](const auto& collection) { return !isLocked(collection); });
    return collections;
}

std::optional<SecretString> SecretServiceItems::dataOf(SecretItem* item) const
{
    ErrorReport report;
    const auto answer = operation_.wait([&](auto... rest) { secret_item_load_secret(item, rest...); });
    secret_item_load_secret_finish(item, answer.get(), report);
    if (report.saysLocked()) {
        return std::nullopt;
    }
    report.require();
    const Owned<SecretValue> value(secret_item_get_secret(item));
    if (!value) {
        return std::nullopt;
    }
    gsize length = 0;
    const auto* bytes = secret_value_get(value.get(), &length);
    return SecretString(bytes, length);
}

void SecretServiceItems::replace(SecretItem* item, const SecretString& data) const
{
    if (!setData(item, data)) { // some keyrings lock an item after each use
        unlock(item);
        if (!setData(item, data)) {
            throw StatusError{errSecInteractionNotAllowed};
        }
    }
    requireStored(item, data);
}

/// @returns false where it is locked
bool SecretServiceItems::setData(SecretItem* item, const SecretString& data) const
{
    ErrorReport report;
    const auto value = valueOf(data);
    const auto answer =
        operation_.wait([&](auto... rest) { secret_item_set_secret(item, value.get(), rest...); });
    secret_item_set_secret_finish(item, answer.get(), report);
    if (report.saysLocked()) {
        return false;
    }
    report.require();
    return true;
}

/// Not every keyring that reports success has stored the data. One that is locked by now is believed.
void SecretServiceItems::requireStored(SecretItem* item, const SecretString& data) const
{
    const auto stored = dataOf(item);
    if (stored && *stored != data) {
        throw StatusError{errSecIO};
    }
}

bool SecretServiceItems::create(const SecretString& data) const
{
    auto collection = defaultCollection();
    if (collection && isLocked(collection)) {
        unlock(collection.get());
        if (find()) {
            return false; // it was there all the time
        }
    }
    // Some keyrings name a default collection that is no object.
    if (!collection || !createIn(collection.get(), data)) {
        makeDefaultCollection();
        collection = defaultCollection();
        if (!collection || !createIn(collection.get(), data)) {
            throw StatusError{errSecIO};
        }
    }
    if (const auto item = find()) {
        requireStored(item.get(), data);
    } else if (!mayBeHidden(Search::usual)) { // some lock after each use, and hide what is locked
        throw StatusError{errSecIO};
    }
    return true;
}

/// @returns false where there is no such collection
bool SecretServiceItems::createIn(SecretCollection* collection, const SecretString& data) const
{
    const auto properties = itemProperties(label_, attributes_.get());
    ErrorReport report;
    const auto value = valueOf(data);
    const auto answer = operation_.wait([&](auto... rest) {
        secret_service_create_item_dbus_path(operation_.service(),
                                             g_dbus_proxy_get_object_path(G_DBUS_PROXY(collection)),
                                             properties.get(), value.get(), SECRET_ITEM_CREATE_NONE, rest...);
    });
    const Owned<gchar> path(
        secret_service_create_item_dbus_path_finish(operation_.service(), answer.get(), report));
    if (report.saysMissing()) {
        return false;
    }
    report.require();
    return true;
}

void SecretServiceItems::makeDefaultCollection() const
{
    ErrorReport report;
    const auto answer = operation_.wait([&](auto... rest) {
        secret_collection_create(operation_.service(), "Default", SECRET_COLLECTION_DEFAULT,
                                 SECRET_COLLECTION_CREATE_NONE, rest...);
    });
    const Owned<SecretCollection> made(secret_collection_create_finish(answer.get(), report));
    report.require();
}

} // namespace MirrowvaleAuthenticator
