#pragma once

#include "platform/credentials/Keychain.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>

namespace MirrowvaleAuthenticator {

/// The credential store of the user's session: the Secret Service (freedesktop.org), found on the session
/// bus.
///
/// An item lies in the default collection and is found in any, by class, service and account. A locked one is
/// unlocked by the service's own prompt, again where the service locks after each use; so is a collection
/// that may hide it. Data that this store has neither read nor written is never replaced. Where no service
/// can be reached, or an operation takes more than 4 seconds, prompts not counted, it answers
/// `errSecNotAvailable`.
class SecretServiceCredentialStore : public CredentialStore {
public:
    OSStatus copyMatching(const SecDictionary& query, SecResult& result) noexcept override;
    OSStatus update(const SecDictionary& query, const SecDictionary& attributes) noexcept override;
    OSStatus add(const SecDictionary& attributes) noexcept override;
    /// @returns `errSecParam`: the keyring is no reserve
    OSStatus remove(const SecDictionary& query) noexcept override;

private:
    bool isKnown(std::string_view account) const;
    bool isKnown(std::string_view account, const SecretString& data) const;
    void note(std::string_view account, const SecretString& data);

    /// Digests of data, by the item's account.
    std::map<std::string, std::set<std::string>, std::less<>> known_;
};

} // namespace MirrowvaleAuthenticator
