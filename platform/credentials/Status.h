#pragma once

#include "platform/credentials/Keychain.h"

#include <exception>
#include <new>
#include <system_error>

/// The statuses of what fails in a credential store: of exceptions and `errno`. Those of the keyring's
/// library are told in `keyring/SecretServiceStatus.h`.
namespace MirrowvaleAuthenticator {

/// Ends an operation of a credential store with a status.
struct StatusError : std::exception {
    explicit StatusError(OSStatus reason) : status(reason) { }
    const char* what() const noexcept override { return "a credential store failed"; }

    OSStatus status;
};

/// The status for a failed system call's `errno`.
OSStatus statusForErrno(int error);

/// Runs an operation that returns a status; whatever it throws comes back as one, too.
template <typename Operation>
OSStatus statusOf(Operation operation) noexcept
{
    try {
        return operation();
    } catch (const StatusError& error) {
        return error.status;
    } catch (const std::system_error& error) {
        return statusForErrno(error.code().value());
    } catch (const std::bad_alloc&) {
        return errSecAllocate;
    } catch (...) {
        return errSecIO;
    }
}

} // namespace MirrowvaleAuthenticator
