#include "storage/StoredList.h"

#include "core/StoredForm.h"
#include "storage/KeychainTokenStoreError.h"

namespace MirrowvaleAuthenticator {

StoredList StoredList::of(OSStatus status, const SecResult& result)
{
    if (status == errSecItemNotFound || (status == errSecSuccess && !result)) {
        return {};
    }
    if (status != errSecSuccess) {
        const auto state = status == errSecDecode ? State::unreadable : State::unreached;
        return {.state = state, .failure = KeychainTokenStoreError(status)};
    }
    try {
        return {.tokens = decodeTokens(*result)};
    } catch (const StoredFormError& error) {
        return {.state = State::unreadable, .failure = error};
    } catch (const std::bad_alloc&) {
        return {.state = State::unreached, .failure = KeychainTokenStoreError(errSecAllocate)};
    }
}

void setAside(CredentialStore& store, const ItemName& name)
{
    SecResult data;
    auto status = store.read(name, Search::usual, data);
    if (status == errSecItemNotFound || status == errSecDecode) {
        return;
    }
    auto copy = name;
    for (int number = 1; data && (status == errSecSuccess || status == errSecDuplicateItem); ++number) {
        copy.account = name.account + ".unreadable-" + std::to_string(number);
        status = store.add(copy, *data);
        if (status == errSecSuccess) {
            return;
        }
    }
    if (status != errSecSuccess) {
        throw KeychainTokenStoreError(status);
    }
}

} // namespace MirrowvaleAuthenticator
