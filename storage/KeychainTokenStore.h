#pragma once

#include "platform/keychain/Keychain.h"
#include "storage/StoredList.h"

#include <string>
#include <vector>

namespace MirrowvaleAuthenticator {

/// The token list as one generic-password item of the credential store; keeps no copy of it.
class KeychainTokenStore {
public:
    KeychainTokenStore(std::string service, std::string account);

    /// The stored list; empty where there is no item. The item stays as it is, whatever it holds.
    StoredList load() const;

    /// Replaces the stored list, creating the item where there is none.
    /// @throws StoredFormError          before the credential store is touched
    /// @throws KeychainTokenStoreError  any status other than success
    void save(const std::vector<AuthToken>& tokens) const;

private:
    SecDictionary query() const;

    std::string service_;
    std::string account_;
};

} // namespace MirrowvaleAuthenticator
