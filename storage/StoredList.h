#pragma once

#include "core/AuthToken.h"
#include "platform/credentials/CredentialStore.h"

#include <string>
#include <vector>

namespace MirrowvaleAuthenticator {

/// What a load found in a place of the list.
struct StoredList {
    enum class State {
        read, ///< its tokens are here; an absent item has none
        unreadable, ///< its data is not a list, or does not open: to be set aside before it is replaced
        unreached, ///< nobody knows what it holds
    };

    std::vector<AuthToken> tokens{}; ///< in stored order
    State state = State::read;
    OSStatus status = errSecSuccess; ///< why it could not be reached
    std::string failure{}; ///< the message for the user, where it could not be read
    SecResult data{}; ///< the data of an unreadable item that opens

    /// What a search of a credential store found.
    static StoredList of(OSStatus status, SecResult result);
};

/// Copies unreadable data into a new item beside its own, under the first free account of
/// "<account>.unreadable-1", "<account>.unreadable-2" and so on.
/// @throws KeychainTokenStoreError  any status that leaves the copy unmade
void setAside(CredentialStore& store, const ItemName& name, const SecretString& data);

} // namespace MirrowvaleAuthenticator
