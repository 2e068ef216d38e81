#pragma once

#include "platform/Keychain.h"

namespace MirrowvaleAuthenticator {

/// The status that tells a failed system call's `errno` in the credential store's terms.
OSStatus statusForErrno(int error);

/// Throws `std::system_error` with the current `errno`.
[[noreturn]] void throwErrno(const char* operation);

} // namespace MirrowvaleAuthenticator
