#include "platform/credentials/keyring/SecretServiceCredentialStore.h"

#include "platform/credentials/keyring/SecretServiceItems.h"

namespace MirrowvaleAuthenticator {

namespace {

std::string digestOf(const SecretString& data)
{
    const Owned<gchar> text(g_compute_checksum_for_data(
        G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(data.data()), data.size()));
    return text.get();
}

/// Runs one operation on the items of a name.
template <typename Action>
OSStatus onItems(const ItemName& name, Action action)
{
    return SecretServiceOperation::run(
        [&](auto& operation) { return action(SecretServiceItems(operation, name)); });
}

} // namespace

OSStatus SecretServiceCredentialStore::read(const ItemName& name, Search search, SecResult& result) noexcept
{
    return onItems(name, [&](const SecretServiceItems& items) {
        if (search == Search::quiet) {
            return items.find()                      ? errSecSuccess
                : items.mayBeHidden(searchFor(name)) ? errSecInteractionNotAllowed
                                                     : errSecItemNotFound;
        }
        const auto item = items.findUnlocked(search == Search::usual ? searchFor(name) : search);
        if (!item) {
            return errSecItemNotFound;
        }
        result = items.dataOf(item.get());
        if (!result) {
            return errSecInteractionNotAllowed;
        }
        note(name, *result);
        return errSecSuccess;
    });
}

OSStatus SecretServiceCredentialStore::update(const ItemName& name, const SecretString& data) noexcept
{
    return onItems(name, [&](const SecretServiceItems& items) {
        const auto item = items.findUnlocked(searchFor(name));
        if (!item) {
            return errSecItemNotFound;
        }
        const auto stored = items.dataOf(item.get());
        if (!stored) {
            return errSecInteractionNotAllowed; // what cannot be compared is not replaced
        }
        const auto known = known_.find(name);
        if (known == known_.end() || !known->second.contains(digestOf(*stored))) {
            return errSecInvalidItemRef;
        }
        note(name, data); // before: a call that gets no answer may have been carried out
        items.replace(item.get(), data);
        return errSecSuccess;
    });
}

OSStatus SecretServiceCredentialStore::add(const ItemName& name, const SecretString& data) noexcept
{
    const auto status = onItems(name, [&](const SecretServiceItems& items) {
        if (items.findUnlocked(searchFor(name))) {
            return errSecDuplicateItem;
        }
        note(name, data);
        return items.create(data) ? errSecSuccess : errSecDuplicateItem;
    });
    if (status != errSecSuccess && status != errSecNotAvailable) {
        known_.erase(name); // it was not made, and need not exist
    }
    return status;
}

/// An item that was read or written here exists.
Search SecretServiceCredentialStore::searchFor(const ItemName& name) const
{
    return known_.contains(name) ? Search::thorough : Search::usual;
}

void SecretServiceCredentialStore::note(const ItemName& name, const SecretString& data)
{
    known_[name].insert(digestOf(data));
}

} // namespace MirrowvaleAuthenticator
