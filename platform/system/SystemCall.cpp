#include "platform/system/SystemCall.h"

#include <system_error>

namespace MirrowvaleAuthenticator {

void throwErrno(const char* operation)
{
    throw std::system_error(errno, std::generic_category(), operation);
}

} // namespace MirrowvaleAuthenticator
