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
    const auto data = encodeTokens(tokens);
    auto status = tokens.empty() ? store.remove(name_) : store.update(name_, data);
    if (status == errSecItemNotFound) {
        status = tokens.empty() ? errSecSuccess : store.add(name_, data);
    }
    if (status != errSecSuccess) {
        throw KeychainTokenStoreError(status);
    }
}

void TokenReserve::setAside(const SecretString& data) const
{
    MirrowvaleAuthenticator::setAside(requireStore(), name_, data);
}

} // namespace MirrowvaleAuthenticator
