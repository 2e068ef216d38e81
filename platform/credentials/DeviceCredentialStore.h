#pragma once

#include "platform/credentials/CredentialStore.h"

#include <filesystem>
#include <utility>

namespace MirrowvaleAuthenticator {

/// This device's credential store: the session's keyring, and sealed files.
///
/// The first operation finds out in which of the two its items live in this run. What the keyring answers
/// decides, and a location record in the state folder remembers it:
///
/// | the keyring                          | the items live in                                          |
/// |--------------------------------------|------------------------------------------------------------|
/// | has the item                         | the keyring                                                |
/// | has it not, and is open              | the sealed files if they have it, else the keyring;        |
/// |                                      | unknown while the sealed files cannot be read              |
/// | is locked; the record names the      | the sealed files: no prompt only to search                 |
/// | sealed files, which have the item    |                                                            |
/// | is locked, and not to be unlocked    | unknown: the operation answers with the keyring's status   |
/// | fails, is silent or absent           | unknown if the record names it, else the sealed files      |
///
/// As long as the items do not live in the sealed files, those are the reserve: an item of the same name may
/// lie there, too.
class DeviceCredentialStore : public CredentialStore {
public:
    /// @param keyring  answers `errSecNotAvailable` where the session has none
    DeviceCredentialStore(CredentialStore& keyring, CredentialStore& sealedFiles,
                          std::filesystem::path stateFolder)
        : keyring_(keyring), sealedFiles_(sealedFiles), stateFolder_(std::move(stateFolder))
    {
    }

    OSStatus read(const ItemName& name, Search search, SecResult& result) noexcept override;
    OSStatus update(const ItemName& name, const SecretString& data) noexcept override;
    OSStatus add(const ItemName& name, const SecretString& data) noexcept override;
    CredentialStore* reserve() noexcept override;

private:
    CredentialStore& requirePlace(const ItemName& name);
    OSStatus find(const ItemName& name, SecResult& result);
    OSStatus askKeyring(const ItemName& name, const CredentialStore* recorded, SecResult& result) const;
    OSStatus askSealedFiles(const ItemName& name, const CredentialStore* recorded, SecResult& result);
    const CredentialStore* recordedPlace(const ItemName& name) const;
    void record(const ItemName& name, const CredentialStore* before) const;

    CredentialStore& keyring_;
    CredentialStore& sealedFiles_;
    std::filesystem::path stateFolder_;
    CredentialStore* place_ = nullptr; ///< the one of them in which the items live, once that is known
};

} // namespace MirrowvaleAuthenticator
