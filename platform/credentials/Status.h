#pragma once

#include "platform/credentials/Keychain.h"

#include <new>
#include <system_error>

/// The one place that tells the failures of both credential stores in the platform's public numbers.
namespace MirrowvaleAuthenticator {

/// Ends an operation of a credential store with a status.
struct StatusError {
    OSStatus status;
};

/// The status for a failed system call's `errno`.
OSStatus statusForErrno(int error);

/// Runs an operation that returns a status; whatever it throws comes back as one, too.
template <typename Operation>
OSStatus statusOf(Operation operation)
{
    try {
        return operation();
    } catch (const StatusError& error) {
        return error.status;
    } catch (const std::system_error& error) {
        return statusForErrno(error.code().value());
    } catch (const std::bad_alloc&) {
        return errSecAllocate;
    }
}

} // namespace MirrowvaleAuthenticator
