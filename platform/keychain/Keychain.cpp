#include "platform/keychain/Keychain.h"

#include "platform/credentials/DeviceCredentialStore.h"
#include "platform/credentials/SealedFileCredentialStore.h"
#include "platform/credentials/keyring/SecretServiceCredentialStore.h"
#include "platform/system/ApplicationFolders.h"

namespace MirrowvaleAuthenticator {

namespace {

CredentialStore* overridingStore = nullptr;

/// @throws StatusError  `errSecParam` where there is no such entry
template <typename Value>
const Value& require(const SecDictionary& entries, std::string_view key)
{
    const auto found = entries.find(key);
    const auto* value = found == entries.end() ? nullptr : std::get_if<Value>(&found->second);
    if (value == nullptr) {
        throw StatusError{errSecParam};
    }
    return *value;
}

ItemName nameIn(const SecDictionary& entries)
{
    if (require<std::string>(entries, kSecClass) != kSecClassGenericPassword) {
        throw StatusError{errSecParam};
    }
    return {require<std::string>(entries, kSecAttrService), require<std::string>(entries, kSecAttrAccount)};
}

const SecretString& dataIn(const SecDictionary& entries)
{
    return require<SecretString>(entries, kSecValueData);
}

} // namespace

CredentialStore& credentialStore()
{
    if (overridingStore != nullptr) {
        return *overridingStore;
    }
    static SecretServiceCredentialStore keyring;
    static SealedFileCredentialStore sealedFiles(dataFolderPath(), stateFolderPath());
    static DeviceCredentialStore deviceStore(keyring, sealedFiles, stateFolderPath());
    return deviceStore;
}

OSStatus SecItemCopyMatching(const SecDictionary& query, SecResult& result)
{
    return statusOf([&] {
        result.reset();
        if (!require<bool>(query, kSecReturnData)) {
            return errSecParam;
        }
        return credentialStore().read(nameIn(query), Search::usual, result);
    });
}

OSStatus SecItemUpdate(const SecDictionary& query, const SecDictionary& attributesToUpdate)
{
    return statusOf([&] { return credentialStore().update(nameIn(query), dataIn(attributesToUpdate)); });
}

OSStatus SecItemAdd(const SecDictionary& attributes)
{
    return statusOf([&] { return credentialStore().add(nameIn(attributes), dataIn(attributes)); });
}

CredentialStoreOverride::CredentialStoreOverride(CredentialStore& store) : previous_(overridingStore)
{
    overridingStore = &store;
}

CredentialStoreOverride::~CredentialStoreOverride()
{
    overridingStore = previous_;
}

} // namespace MirrowvaleAuthenticator
