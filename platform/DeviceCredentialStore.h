#pragma once

#include "platform/Keychain.h"

#include <filesystem>
#include <string_view>

namespace MirrowvaleAuthenticator {

/// This device's credential store: the session's keyring where there is one, else sealed files; and an item
/// stays where it was created.
///
/// Before the first item of a service name is created, a mark in the state folder says where the items of
/// that name live. From then on only that place is asked: while a marked keyring cannot be reached,
/// operations answer with its status, never with `errSecItemNotFound`.
class DeviceCredentialStore : public CredentialStore {
public:
    /// @param keyring  answers `errSecNotAvailable` where the session has none
    DeviceCredentialStore(CredentialStore& keyring, CredentialStore& sealedFiles,
                          std::filesystem::path stateFolder);

    OSStatus copyMatching(const SecDictionary& query, SecResult& result) override;
    OSStatus update(const SecDictionary& query, const SecDictionary& attributes) override;
    OSStatus add(const SecDictionary& attributes) override;

private:
    enum class Place { keyring, sealedFiles };

    /// Where an item lives, or, as long as it does not, where it would be created.
    struct Location {
        Place place;
        bool isSettled;
    };

    Location locate(const SecDictionary& entries) const;
    void markKeyring(std::string_view service) const;
    OSStatus create(Place place, const SecDictionary& attributes) const;
    CredentialStore& store(Place place) const;

    CredentialStore& keyring;
    CredentialStore& sealedFiles;
    std::filesystem::path stateFolder;
};

} // namespace MirrowvaleAuthenticator
