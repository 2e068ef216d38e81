#pragma once

#include "platform/credentials/Keychain.h"

#include <string>
#include <string_view>

namespace MirrowvaleAuthenticator {

/// What tells one generic-password item from another.
struct ItemName {
    std::string_view service;
    std::string_view account;
};

/// The item that the entries name.
/// @throws StatusError  `errSecParam` where they name no generic-password item
ItemName requireName(const SecDictionary& entries);

/// The entries' `kSecValueData`.
/// @throws StatusError  `errSecParam` where there is none
const SecretString& requireData(const SecDictionary& entries);

/// A file name for any text: everything but ASCII letters, digits, "." and "-" becomes a percent-escape.
std::string fileNamePart(std::string_view text);

} // namespace MirrowvaleAuthenticator
