#pragma once

#include "platform/credentials/Status.h"
#include "platform/text/LocalizedError.h"

namespace MirrowvaleAuthenticator {

/// A keychain call returned a status that has no meaning of its own here.
class KeychainTokenStoreError : public LocalizedError {
public:
    explicit KeychainTokenStoreError(OSStatus unexpectedStatus)
        : LocalizedError("Keychain operation failed with status " + std::to_string(unexpectedStatus) + "."),
          unexpectedStatus_(unexpectedStatus)
    {
    }

    OSStatus unexpectedStatus() const { return unexpectedStatus_; }

    /// Whether the item holds what this process has neither read nor written.
    bool saysUnknown() const
    {
        return unexpectedStatus_ == errSecInvalidItemRef || unexpectedStatus_ == errSecDuplicateItem;
    }

    /// Whether the user refused to unlock the keyring.
    bool saysDismissed() const { return unexpectedStatus_ == errSecUserCanceled; }

private:
    OSStatus unexpectedStatus_;
};

} // namespace MirrowvaleAuthenticator
