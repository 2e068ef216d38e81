#pragma once

#include "platform/credentials/Keychain.h"

namespace MirrowvaleAuthenticator {

/// The keyring of the user's session, by way of a module that is loaded at the first operation that a keyring
/// may answer, and stays. The libraries that it takes are 11 % of a start and 2.8 MiB, which a session
/// without a keyring does without. Where none can be reached, or the module cannot be loaded, every operation
/// answers `errSecNotAvailable`.
class KeyringModule : public CredentialStore {
public:
    OSStatus copyMatching(const SecDictionary& query, SecResult& result) noexcept override;
    OSStatus update(const SecDictionary& query, const SecDictionary& attributes) noexcept override;
    OSStatus add(const SecDictionary& attributes) noexcept override;
    OSStatus remove(const SecDictionary& query) noexcept override;
};

/// What the module exports: its one store, which lives as long as the process.
extern "C" __attribute__((visibility("default"))) CredentialStore* mirrowvaleKeyring();

} // namespace MirrowvaleAuthenticator
