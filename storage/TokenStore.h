#pragma once

#include "core/AuthToken.h"
#include "platform/ObservableObject.h"
#include "storage/KeychainTokenStore.h"

#include <exception>
#include <optional>
#include <string>
#include <vector>

namespace MirrowvaleAuthenticator {

/// The one token list of the application: screens read `tokens`, change it, then call `persist()`.
class TokenStore : public ObservableObject {
public:
    /// Loads the stored list at once; a failure shows in `lastError`.
    TokenStore();

    Published<std::vector<AuthToken>> tokens{*this}; ///< in display order
    Published<std::optional<std::string>> lastError{
        *this}; ///< message of the last load or save, if it failed

    /// Replaces `tokens` by the stored list, sorted by issuer in the user's locale; empty after a failure.
    void load();

    /// Writes `tokens` to the credential store. After a failed load, the item that could not be read is set
    /// aside first; one that could not even be reached is spared, and the save fails with the load's status.
    void persist();

    /// Adds one to the counter of the listed token with `token`'s id and persists. A token that is not
    /// listed, or whose counter is at its largest, stays as it is, and nothing is written.
    void advanceCounter(const AuthToken& token);

private:
    void spareUnreadableItem();

    KeychainTokenStore storage;
    std::exception_ptr loadFailure; ///< until the item that it concerns is out of danger
};

} // namespace MirrowvaleAuthenticator
