#pragma once

#include "storage/StoredList.h"

#include <string>
#include <vector>

namespace MirrowvaleAuthenticator {

/// What this device keeps of the list while it is not saved in its own place, or cannot be read there: the
/// tokens whose save failed or has yet to be tried. Where the list's own place is on this device, there is no
/// reserve.
class TokenReserve {
public:
    TokenReserve(std::string service, std::string account);

    /// What is kept; nothing where there is no reserve.
    StoredList load() const;

    /// Keeps exactly these tokens; of none, nothing stays.
    /// @throws StoredFormError          tokens that cannot be written
    /// @throws KeychainTokenStoreError  any status other than success, and that there is no reserve
    void save(const std::vector<AuthToken>& tokens) const;

    /// Copies what is kept, and no list, beside it.
    /// @throws KeychainTokenStoreError  any status that leaves the copy unmade
    void setAside(const SecretString& data) const;

private:
    ItemName name_;
};

} // namespace MirrowvaleAuthenticator
