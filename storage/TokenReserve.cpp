#include "storage/TokenReserve.h"

#include "core/StoredForm.h"
#include "platform/keychain/Keychain.h"
#include "storage/KeychainTokenStoreError.h"

#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

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

StoredList TokenReserve::load()
{
    SecResult result;
    auto* store = credentialStore().reserve();
    const auto status = store == nullptr ? errSecItemNotFound : store->read(name_, Search::usual, result);
    auto found = StoredList::of(status, result);
    isUnreadable_ = found.state == StoredList::State::unreadable;
    return found;
}

void TokenReserve::save(const std::vector<AuthToken>& tokens)
{
    auto* store = credentialStore().reserve();
    if (store == nullptr) {
        throw KeychainTokenStoreError(errSecNotAvailable);
    }
    if (isUnreadable_) {
        setAside(*store, name_);
        isUnreadable_ = false;
    }
    const auto status = tokens.empty() ? clear(*store, name_) : write(*store, name_, encodeTokens(tokens));
    if (status != errSecSuccess) {
        throw KeychainTokenStoreError(status);
    }
}

} // namespace MirrowvaleAuthenticator
