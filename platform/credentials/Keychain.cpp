#include "platform/credentials/Keychain.h"

#include "platform/credentials/DeviceCredentialStore.h"
#include "platform/credentials/KeyringModule.h"
#include "platform/credentials/SealedFileCredentialStore.h"
#include "platform/system/PrivateFolder.h"

namespace MirrowvaleAuthenticator {

namespace {

CredentialStore* overridingStore = nullptr;

CredentialStore& currentStore()
{
    if (overridingStore != nullptr) {
        return *overridingStore;
    }
    static KeyringModule keyring;
    static SealedFileCredentialStore sealedFiles(dataFolderPath(), stateFolderPath());
    static DeviceCredentialStore deviceStore(keyring, sealedFiles, stateFolderPath());
    return deviceStore;
}

} // namespace

OSStatus SecItemCopyMatching(const SecDictionary& query, SecResult& result)
{
    return currentStore().copyMatching(query, result);
}

OSStatus SecItemUpdate(const SecDictionary& query, const SecDictionary& attributesToUpdate)
{
    return currentStore().update(query, attributesToUpdate);
}

OSStatus SecItemAdd(const SecDictionary& attributes)
{
    return currentStore().add(attributes);
}

OSStatus SecItemDelete(const SecDictionary& query)
{
    return currentStore().remove(query);
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
