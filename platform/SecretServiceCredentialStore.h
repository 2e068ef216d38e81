#pragma once

#include "platform/Keychain.h"

namespace MirrowvaleAuthenticator {

/// The credential store of the user's session: the Secret Service (freedesktop.org), found on the session
/// bus.
///
/// An item lies in the default collection and is found in any, by class, service and account. A locked one
/// asks to be unlocked in the system's own way, once in a call. Where no service can be reached every
/// operation answers `errSecNotAvailable`.
class SecretServiceCredentialStore : public CredentialStore {
public:
    OSStatus copyMatching(const SecDictionary& query, SecResult& result) override;
    OSStatus update(const SecDictionary& query, const SecDictionary& attributes) override;
    OSStatus add(const SecDictionary& attributes) override;
};

/// What the module exports: its one store, which lives as long as the process.
extern "C" __attribute__((visibility("default"))) CredentialStore* mirrowvaleKeyring();

} // namespace MirrowvaleAuthenticator
