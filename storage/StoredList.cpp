#include "storage/StoredList.h"

#include "core/StoredForm.h"
#include "storage/KeychainTokenStoreError.h"

#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

/// An item that could not be opened, or not be reached.
StoredList closed(OSStatus status)
{
    using enum StoredList::State;
    return {.state = status == errSecDecode ? unreadable : unreached,
            .status = status,
            .failure = KeychainTokenStoreError(status).errorDescription()};
}

} // namespace

StoredList StoredList::of(OSStatus status, SecResult result)
{
    if (status != errSecSuccess && status != errSecItemNotFound) {
        return closed(status);
    }
    if (status == errSecItemNotFound || !result) {
        return {};
    }
    try {
        return {.tokens = decodeTokens(*result)};
    } catch (const StoredFormError& error) {
        return {.state = State::unreadable, .failure = error.errorDescription(), .data = std::move(result)};
    } catch (const std::bad_alloc&) {
        return closed(errSecAllocate);
    }
}

void setAside(CredentialStore& store, const ItemName& name, const SecretString& data)
{
    auto copy = name;
    auto status = errSecDuplicateItem;
    for (int number = 1; status == errSecDuplicateItem; ++number) {
        copy.account = name.account + ".unreadable-" + std::to_string(number);
        status = store.add(copy, data);
    }
    if (status != errSecSuccess) {
        throw KeychainTokenStoreError(status);
    }
}

} // namespace MirrowvaleAuthenticator
