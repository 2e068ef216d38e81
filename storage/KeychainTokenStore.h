#pragma once

#include "core/AuthToken.h"
#include "platform/credentials/Keychain.h"
#include "platform/text/LocalizedError.h"

#include <string>
#include <vector>

namespace MirrowvaleAuthenticator {

/// A keychain call returned a status that has no meaning of its own here.
class KeychainTokenStoreError : public LocalizedError {
public:
    explicit KeychainTokenStoreError(OSStatus unexpectedStatus);

    OSStatus unexpectedStatus() const { return unexpectedStatus_; }

    /// Whether another process has changed or made the item since it was read.
    bool saysChanged() const
    {
        return unexpectedStatus_ == errSecInvalidItemRef || unexpectedStatus_ == errSecDuplicateItem;
    }

private:
    OSStatus unexpectedStatus_;
};

/// The token list as one generic-password item of the credential store; keeps no copy of it.
class KeychainTokenStore {
public:
    /// Which of the items of one name: that in its own place, or that in the reserve on this device.
    enum class Place { own, reserve };

    KeychainTokenStore(std::string service, std::string account, Place place = Place::own);

    /// The stored list in stored order; empty where there is no item.
    /// @throws KeychainTokenStoreError  a status other than success and not found
    /// @throws StoredFormError          the item's data is no stored list; the item stays as it is
    std::vector<AuthToken> load() const;

    /// The same before a save; what is no list, or does not open, is empty: its data is set aside, at the
    /// latest by the credential store when it is replaced.
    /// @throws KeychainTokenStoreError  any other status, or one that leaves the copy unmade
    std::vector<AuthToken> loadOrSetAside() const;

    /// Replaces the stored list, creating the item where there is none.
    /// @throws StoredFormError          before the credential store is touched
    /// @throws KeychainTokenStoreError  any status other than success
    void save(const std::vector<AuthToken>& tokens) const;

    /// Removes the item, which is one of the reserve. No item: nothing to do.
    /// @throws KeychainTokenStoreError  any other status than success
    void remove() const;

    /// Copies the item's data, byte for byte, into a new item beside it, under the first free account of
    /// "<account>.unreadable-1", "<account>.unreadable-2" and so on. No item: nothing to do.
    /// @throws KeychainTokenStoreError  any status that leaves the copy unmade
    void setAside() const;

private:
    SecDictionary query(std::string_view accountName) const;

    std::string service_;
    std::string account_;
    Place place_;
};

} // namespace MirrowvaleAuthenticator
