#pragma once

#include "platform/credentials/Keychain.h"

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace MirrowvaleAuthenticator {

/// This device's credential store: the session's keyring, and sealed files.
///
/// The first operation on a service name finds out in which of the two its items live in this run. What the
/// keyring answers decides, and a mark in the state folder remembers it:
///
/// | the keyring                        | its items live in                                             |
/// |------------------------------------|---------------------------------------------------------------|
/// | has the item                       | the keyring                                                   |
/// | has it not, and is open            | the sealed files if they have it, else the keyring; nowhere   |
/// |                                    | while the sealed files cannot be read                         |
/// | is locked, and the mark names the  | the sealed files: no prompt only to search                    |
/// | sealed files, which have the item  |                                                               |
/// | is locked, and not to be unlocked  | nowhere: the operation answers with the keyring's status      |
/// | fails, is silent or absent         | nowhere if they were last found in it, else the sealed files  |
///
/// As long as the items do not live in the sealed files, those are the reserve (`kSecUseReserve`): an item of
/// the same name may lie there, too.
class DeviceCredentialStore : public CredentialStore {
public:
    /// @param keyring  answers `errSecNotAvailable` where the session has none
    DeviceCredentialStore(CredentialStore& keyring, CredentialStore& sealedFiles,
                          std::filesystem::path stateFolder);

    OSStatus copyMatching(const SecDictionary& query, SecResult& result) noexcept override;
    OSStatus update(const SecDictionary& query, const SecDictionary& attributes) noexcept override;
    OSStatus add(const SecDictionary& attributes) noexcept override;
    OSStatus remove(const SecDictionary& query) noexcept override;

private:
    CredentialStore* place(const SecDictionary& entries) const;
    CredentialStore& requirePlace(const SecDictionary& entries);
    OSStatus search(const SecDictionary& query, SecResult& result);
    OSStatus askKeyring(const SecDictionary& query, std::string_view mark, SecResult& result) const;
    std::string rememberedMark(std::string_view service) const;
    void remember(const SecDictionary& entries, std::string_view mark) const;

    CredentialStore& keyring_;
    CredentialStore& sealedFiles_;
    std::filesystem::path stateFolder_;
    std::map<std::string, CredentialStore*, std::less<>> places_; ///< by service; until the process ends
};

} // namespace MirrowvaleAuthenticator
