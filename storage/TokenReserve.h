#pragma once

#include "storage/StoredList.h"

#include <string>
#include <vector>

namespace MirrowvaleAuthenticator {

/// The tokens that are stored on this device, since they are not in the list's own place yet, or that place
/// cannot be read. There is no reserve where the own place is on this device.
class TokenReserve {
public:
    TokenReserve(std::string service, std::string account);

    /// The reserve's tokens; none where there is no reserve.
    StoredList load() const;

    /// Replaces the reserve's tokens; without any, its item is removed.
    /// @throws StoredFormError          tokens that cannot be written
    /// @throws KeychainTokenStoreError  any status other than success, and that there is no reserve
    void save(const std::vector<AuthToken>& tokens) const;

    /// Copies the item's unreadable data into an item beside it.
    /// @throws KeychainTokenStoreError  any status that leaves the copy unmade
    void setAside(const SecretString& data) const;

private:
    ItemName name_;
};

} // namespace MirrowvaleAuthenticator
