#include "storage/TokenReserve.h"

#include "core/StoredForm.h"
#include "platform/keychain/Keychain.h"
#include "storage/KeychainTokenStoreError.h"

#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

/// @throws KeychainTokenStoreError  where there is none
CredentialStore& requireStore()
{
    auto* store = credentialStore().reserve();
    if (store == nullptr) {
        throw KeychainTokenStoreError(errSecNotAvailable);
    }
    return *store;
}

OSStatus write(CredentialStore& store, const ItemName& name, const SecretString& data)
{
    const auto status = store.update(name, data);
    return status == errSecItemNotFound ? store.add(name, data) : status;
}

OSStatus clear(CredentialStore& store, const ItemName& name)
{
    const auto status = store.remove(name);
    return status == errSecItemNotFound ? errSecSuccess : status;
}

} // namespace

TokenReserve::TokenReserve(std::string service, std::string account)
    : name_{std::move(service), std::move(account)}
{
}

StoredList TokenReserve::load() const
{
    SecResult result;
    auto* store = credentialStore().reserve();
    const auto status = store == nullptr ? errSecItemNotFound : store->read(name_, Search::usual, result);
    return StoredList::of(status, std::move(result));
}

void TokenReserve::save(const std::vector<AuthToken>& tokens) const
{
    auto& store = requireStore();
    const auto status = tokens.empty() ? clear(store, name_) : write(store, name_, encodeTokens(tokens));
    if (status != errSecSuccess) {
        throw KeychainTokenStoreError(status);
    }
}

void TokenReserve::setAside(const SecretString& data) const
{
    MirrowvaleAuthenticator::setAside(requireStore(), name_, data);
}

} // namespace MirrowvaleAuthenticator
