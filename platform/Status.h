#pragma once

#include "platform/Keychain.h"

#include <cerrno>
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

/// Throws `std::system_error` with the current `errno`.
[[noreturn]] void throwErrno(const char* operation);

/// Makes a system call, again as long as a signal interrupts it.
template <typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

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
