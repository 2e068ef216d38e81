#pragma once

#include "core/AuthToken.h"
#include "platform/credentials/CredentialStore.h"
#include "platform/text/LocalizedError.h"

#include <optional>
#include <vector>

namespace MirrowvaleAuthenticator {

/// What a load found in a place of the list.
struct StoredList {
    enum class State {
        read, ///< its tokens are here; an absent item has none
        unreadable, ///< it holds data that is no list, or does not open: to be set aside before it is
                    ///< replaced
        unreached, ///< nobody knows what it holds
    };

    std::vector<AuthToken> tokens{}; ///< in stored order
    State state = State::read;
    std::optional<LocalizedError> failure{}; ///< why it could not be read

    /// What a search of a credential store found.
    static StoredList of(OSStatus status, const SecResult& result);
};

/// Copies an item's data, byte for byte, into a new item beside it, under the first free account of
/// "<account>.unreadable-1", "<account>.unreadable-2" and so on. No item, or one that does not open, which
/// the credential store itself sets aside when it replaces it: nothing to do.
/// @throws KeychainTokenStoreError  any status that leaves the copy unmade
void setAside(CredentialStore& store, const ItemName& name);

} // namespace MirrowvaleAuthenticator
