#include "storage/KeychainTokenStore.h"

#include "core/StoredForm.h"

#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

SecValue value(std::string_view text)
{
    return SecretString(text);
}

/// What a search found: data, or nothing where there is no such item or it holds none.
std::optional<SecretString> copyData(SecDictionary query)
{
    query[kSecReturnData] = true;
    query[kSecMatchLimit] = value(kSecMatchLimitOne);
    SecResult result;
    const auto status = SecItemCopyMatching(query, result);
    if (status == errSecItemNotFound) {
        return std::nullopt;
    }
    if (status != errSecSuccess) {
        throw KeychainTokenStoreError(status);
    }
    auto* data = std::get_if<SecretString>(&result);
    return data == nullptr ? std::nullopt : std::optional(std::move(*data));
}

SecDictionary itemAttributes(SecretString data)
{
    SecDictionary attributes{{kSecAttrAccessible, value(kSecAttrAccessibleAfterFirstUnlockThisDeviceOnly)}};
    attributes.emplace(kSecValueData, std::move(data)); // an initializer would copy the whole list
    return attributes;
}

OSStatus addItem(SecDictionary query, SecDictionary attributes)
{
    attributes.merge(std::move(query));
    return SecItemAdd(attributes);
}

} // namespace

KeychainTokenStoreError::KeychainTokenStoreError(OSStatus unexpectedStatus)
    : LocalizedError("Keychain operation failed with status " + std::to_string(unexpectedStatus) + "."),
      unexpectedStatus_(unexpectedStatus)
{
}

KeychainTokenStore::KeychainTokenStore(std::string service, std::string account, Place place)
    : service_(std::move(service)), account_(std::move(account)), place_(place)
{
}

SecDictionary KeychainTokenStore::query(std::string_view accountName) const
{
    SecDictionary entries{{kSecClass, value(kSecClassGenericPassword)},
                          {kSecAttrService, value(service_)},
                          {kSecAttrAccount, value(accountName)}};
    if (place_ == Place::reserve) {
        entries.emplace(kSecUseReserve, true);
    }
    return entries;
}

std::vector<AuthToken> KeychainTokenStore::load() const
{
    const auto data = copyData(query(account_));
    return data ? decodeTokens(*data) : std::vector<AuthToken>();
}

std::vector<AuthToken> KeychainTokenStore::loadOrSetAside() const
{
    try {
        return load();
    } catch (const StoredFormError&) {
        setAside();
    } catch (const KeychainTokenStoreError& error) {
        if (error.unexpectedStatus() != errSecDecode) {
            throw;
        }
        // The credential store itself sets aside what it cannot open.
    }
    return {};
}

void KeychainTokenStore::save(const std::vector<AuthToken>& tokens) const
{
    auto attributes = itemAttributes(encodeTokens(tokens));
    auto item = query(account_);
    auto status = SecItemUpdate(item, attributes);
    if (status == errSecItemNotFound) {
        status = addItem(std::move(item), std::move(attributes));
    }
    if (status != errSecSuccess) {
        throw KeychainTokenStoreError(status);
    }
}

void KeychainTokenStore::remove() const
{
    const auto status = SecItemDelete(query(account_));
    if (status != errSecSuccess && status != errSecItemNotFound) {
        throw KeychainTokenStoreError(status);
    }
}

void KeychainTokenStore::setAside() const
{
    const auto data = copyData(query(account_));
    if (!data) {
        return;
    }
    for (int number = 1;; ++number) {
        auto copy = query(account_ + ".unreadable-" + std::to_string(number));
        const auto status = addItem(copy, itemAttributes(*data));
        if (status == errSecSuccess) {
            return;
        }
        if (status != errSecDuplicateItem) {
            throw KeychainTokenStoreError(status);
        }
    }
}

} // namespace MirrowvaleAuthenticator
