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
    StoredList load();

    /// Keeps exactly these tokens; of none, nothing stays. What is no list is set aside first.
    /// @throws StoredFormError          tokens that cannot be written
    /// @throws KeychainTokenStoreError  any status other than success, and that there is no reserve
    void save(const std::vector<AuthToken>& tokens);

private:
    ItemName name_;
    bool isUnreadable_ = false;
};

} // namespace MirrowvaleAuthenticator
