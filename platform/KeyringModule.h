#pragma once

#include "platform/Keychain.h"

namespace MirrowvaleAuthenticator {

/// The keyring of the user's session, by way of a module that is loaded at the first operation and stays:
/// a session without a bus starts without the libraries that a keyring takes. Where there is no bus, or the
/// module cannot be loaded, no keyring can be reached: every operation answers `errSecNotAvailable`.
class KeyringModule : public CredentialStore {
public:
    OSStatus copyMatching(const SecDictionary& query, SecResult& result) override;
    OSStatus update(const SecDictionary& query, const SecDictionary& attributes) override;
    OSStatus add(const SecDictionary& attributes) override;
    OSStatus remove(const SecDictionary& query) override;
};

} // namespace MirrowvaleAuthenticator
