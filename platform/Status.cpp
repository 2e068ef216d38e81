#include "platform/Status.h"

#include <cerrno>

namespace MirrowvaleAuthenticator {

OSStatus statusForErrno(int error)
{
    switch (error) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return errSecDiskFull;
    case EACCES:
    case EPERM:
    case EROFS:
        return errSecWrPerm;
    case EMFILE:
    case ENFILE:
    case ENOMEM:
        return errSecAllocate;
    default:
        return errSecIO;
    }
}

void throwErrno(const char* operation)
{
    throw std::system_error(errno, std::generic_category(), operation);
}

} // namespace MirrowvaleAuthenticator
