#include "platform/credentials/Status.h"

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

} // namespace MirrowvaleAuthenticator
