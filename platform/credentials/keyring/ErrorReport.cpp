#include "platform/credentials/keyring/ErrorReport.h"

#include "platform/credentials/Status.h"

#include <libsecret/secret.h>

namespace MirrowvaleAuthenticator {

namespace {

OSStatus statusForSecretError(int code)
{
    switch (code) {
    case SECRET_ERROR_IS_LOCKED:
        return errSecInteractionNotAllowed;
    case SECRET_ERROR_ALREADY_EXISTS:
        return errSecDuplicateItem;
    case SECRET_ERROR_INVALID_FILE_FORMAT:
        return errSecDecode;
    default:
        // The service broke its own protocol, or an object is gone that it named before. That an item does
        // not exist is for a search to say: taken from anything else, it would let a new list replace the
        // stored one.
        return errSecIO;
    }
}

OSStatus statusForInputOutputError(int code)
{
    switch (code) {
    case G_IO_ERROR_CANCELLED:
        return errSecUserCanceled;
    case G_IO_ERROR_NO_SPACE:
        return errSecDiskFull;
    case G_IO_ERROR_PERMISSION_DENIED:
    case G_IO_ERROR_READ_ONLY:
        return errSecWrPerm;
    case G_IO_ERROR_TOO_MANY_OPEN_FILES:
        return errSecAllocate;
    case G_IO_ERROR_NOT_FOUND:
    case G_IO_ERROR_TIMED_OUT:
    case G_IO_ERROR_CLOSED:
    case G_IO_ERROR_CONNECTION_CLOSED:
    case G_IO_ERROR_CONNECTION_REFUSED:
    case G_IO_ERROR_NOT_CONNECTED:
    case G_IO_ERROR_HOST_UNREACHABLE:
        return errSecNotAvailable;
    default:
        return errSecIO;
    }
}

OSStatus statusForBusError(int code)
{
    if (code >= G_DBUS_ERROR_SPAWN_EXEC_FAILED && code <= G_DBUS_ERROR_SPAWN_FILE_INVALID) {
        return errSecNotAvailable; // the service could not be started
    }
    switch (code) {
    case G_DBUS_ERROR_SERVICE_UNKNOWN:
    case G_DBUS_ERROR_NAME_HAS_NO_OWNER:
    case G_DBUS_ERROR_NO_REPLY: // the service ended during the call
    case G_DBUS_ERROR_NO_SERVER:
    case G_DBUS_ERROR_DISCONNECTED:
        return errSecNotAvailable;
    case G_DBUS_ERROR_ACCESS_DENIED:
    case G_DBUS_ERROR_AUTH_FAILED:
        return errSecWrPerm;
    case G_DBUS_ERROR_NO_MEMORY:
    case G_DBUS_ERROR_LIMITS_EXCEEDED:
        return errSecAllocate;
    default:
        return errSecIO;
    }
}

OSStatus statusFor(const GError& error)
{
    if (error.domain == SECRET_ERROR) {
        return statusForSecretError(error.code);
    }
    if (error.domain == G_IO_ERROR) {
        return statusForInputOutputError(error.code);
    }
    return error.domain == G_DBUS_ERROR ? statusForBusError(error.code) : errSecIO;
}

} // namespace

bool ErrorReport::saysLocked() const
{
    return g_error_matches(error_, SECRET_ERROR, SECRET_ERROR_IS_LOCKED) != FALSE;
}

bool ErrorReport::saysMissing() const
{
    return g_error_matches(error_, SECRET_ERROR, SECRET_ERROR_NO_SUCH_OBJECT) != FALSE
        || g_error_matches(error_, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_METHOD) != FALSE
        || g_error_matches(error_, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_OBJECT) != FALSE;
}

void ErrorReport::require() const
{
    if (error_ != nullptr) {
        throw StatusError{statusFor(*error_)};
    }
}

} // namespace MirrowvaleAuthenticator
