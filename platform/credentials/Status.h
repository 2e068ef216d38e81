#pragma once

#include <cstdint>
#include <exception>
#include <new>
#include <system_error>

/// What a credential store's operations answer, and the statuses of exceptions and of `errno`. Those of the
/// keyring's library are in `keyring/ErrorReport.cpp`.
namespace MirrowvaleAuthenticator {

/// A result of a keychain call: 0, or the platform's public error code.
using OSStatus = std::int32_t;

inline constexpr OSStatus errSecSuccess = 0;
inline constexpr OSStatus errSecDiskFull = -34;
inline constexpr OSStatus errSecIO = -36;
inline constexpr OSStatus errSecParam = -50;
inline constexpr OSStatus errSecWrPerm = -61; ///< the file system does not let this user read or write
inline constexpr OSStatus errSecAllocate = -108; ///< memory or the table of open files is full
inline constexpr OSStatus errSecUserCanceled = -128;
inline constexpr OSStatus errSecNotAvailable = -25291; ///< there is no store to talk to
inline constexpr OSStatus errSecDuplicateItem = -25299;
inline constexpr OSStatus errSecItemNotFound = -25300;
inline constexpr OSStatus errSecInvalidItemRef = -25304; ///< another process has changed the item
inline constexpr OSStatus errSecInteractionNotAllowed = -25308; ///< locked, and not to be unlocked now
inline constexpr OSStatus errSecDecode = -26275; ///< damaged or tampered with: does not authenticate

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
