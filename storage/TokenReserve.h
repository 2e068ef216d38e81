#pragma once

#include "storage/KeychainTokenStore.h"

#include <string>
#include <vector>

namespace MirrowvaleAuthenticator {

/// The tokens whose save failed, kept on this device until the list's own place has them. It may also hold a
/// whole list, where one came to lie in both places.
///
/// No operation throws: the reserve is the last resort, and what it cannot do leaves it as it was.
class TokenReserve {
public:
    TokenReserve(std::string service, std::string account);

    /// What is kept, which becomes part of the list that was loaded; empty where it cannot be read.
    std::vector<AuthToken> take();

    /// The list could not be loaded: whatever is kept is no part of it.
    void leave();

    /// Keeps tokens that could not be saved, beside what is kept and no part of the list.
    /// @returns false where that cannot be done
    bool keep(const std::vector<AuthToken>& tokens);

    /// The list was saved in its own place: what is part of it is kept no longer.
    void release();

    /// Whether anything is kept that is part of the list.
    bool isInUse() const { return isInUse_; }

private:
    void readApart();
    void save(const std::vector<AuthToken>& tokens);

    KeychainTokenStore storage_;
    std::vector<AuthToken> apart_; ///< what is kept and no part of the list
    bool isRead_ = false; ///< whether it is known what is kept
    bool isInUse_ = false;
};

} // namespace MirrowvaleAuthenticator
