#pragma once

#include "platform/credentials/CredentialStore.h"

#include <map>
#include <set>
#include <string>

namespace MirrowvaleAuthenticator {

/// The credential store of the user's session: the Secret Service (freedesktop.org), found on the session
/// bus.
///
/// An item lies in the default collection and is found in any, by class, service and account. A locked one is
/// unlocked by the service's own prompt, again where the service locks after each use; so is a collection
/// that may hold it. Where no service can be reached, or an operation takes more than 4 seconds, prompts not
/// counted, it answers `errSecNotAvailable`.
class SecretServiceCredentialStore : public CredentialStore {
public:
    OSStatus read(const ItemName& name, Search search, SecResult& result) noexcept override;
    OSStatus update(const ItemName& name, const SecretString& data) noexcept override;
    OSStatus add(const ItemName& name, const SecretString& data) noexcept override;

private:
    Search searchFor(const ItemName& name) const;
    void note(const ItemName& name, const SecretString& data);

    std::map<ItemName, std::set<std::string>> known_; ///< digests of what was read or written here
};

} // namespace MirrowvaleAuthenticator
