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

private:
    OSStatus unexpectedStatus_;
};

} // namespace MirrowvaleAuthenticator
