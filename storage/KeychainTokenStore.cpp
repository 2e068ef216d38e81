#include "storage/KeychainTokenStore.h"

#include "core/StoredForm.h"
#include "storage/KeychainTokenStoreError.h"

#include <utility>

namespace MirrowvaleAuthenticator {

namespace {

SecDictionary itemAttributes(SecretString data)
{
    SecDictionary attributes{
        {kSecAttrAccessible, std::string(kSecAttrAccessibleAfterFirstUnlockThisDeviceOnly)}};
    attributes.emplace(kSecValueData, std::move(data)); // an initializer would copy the whole list
    return attributes;
}

} // namespace

KeychainTokenStore::KeychainTokenStore(std::string service, std::string account)
    : service_(std::move(service)), account_(std::move(account))
{
}

SecDictionary KeychainTokenStore::query() const
{
    return {{kSecClass, std::string(kSecClassGenericPassword)},
            {kSecAttrService, service_},
            {kSecAttrAccount, account_}};
}

StoredList KeychainTokenStore::load() const
{
    auto search = query();
    search[kSecReturnData] = true;
    search[kSecMatchLimit] = std::string(kSecMatchLimitOne);
    SecResult result;
    const auto status = SecItemCopyMatching(search, result);
    return StoredList::of(status, std::move(result));
}

void KeychainTokenStore::save(const std::vector<AuthToken>& tokens,
                              const std::function<void()>& beforeCreation) const
{
    auto attributes = itemAttributes(encodeTokens(tokens));
    auto status = SecItemUpdate(query(), attributes);
    if (status == errSecItemNotFound) {
        beforeCreation();
        attributes.merge(query());
        status = SecItemAdd(attributes);
    }
    if (status != errSecSuccess) {
        throw KeychainTokenStoreError(status);
    }
}

void KeychainTokenStore::setAside(const SecretString& data) const
{
    MirrowvaleAuthenticator::setAside(credentialStore(), {service_, account_}, data);
}

} // namespace MirrowvaleAuthenticator
