#pragma once

#include "platform/keychain/Keychain.h"
#include "storage/StoredList.h"

#include <functional>
#include <string>
#include <vector>

namespace MirrowvaleAuthenticator {

/// The token list as one generic-password item of the credential store; without a copy of it in memory.
class KeychainTokenStore {
public:
    KeychainTokenStore(std::string service, std::string account);

    /// The stored list; empty where there is no item. The item stays as it is, whatever it holds.
    StoredList load() const;

    /// Replaces the stored list, creating the item where there is none.
    /// @param beforeCreation            called where there is no item, before it is created
    /// @throws StoredFormError          before the credential store is touched
    /// @throws KeychainTokenStoreError  any status other than success
    void save(
        const std::vector<AuthToken>& tokens, const std::function<void()>& beforeCreation = [] {}) const;

    /// Copies the item's unreadable data into an item beside it.
    /// @throws KeychainTokenStoreError  any status that leaves the copy unmade
    void setAside(const SecretString& data) const;

private:
    SecDictionary query() const;

    std::string service_;
    std::string account_;
};

} // namespace MirrowvaleAuthenticator
