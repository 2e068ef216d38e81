#pragma once

#include <cerrno>
#include <system_error>

namespace MirrowvaleAuthenticator {

/// Throws `std::system_error` with the current `errno`.
[[noreturn]] inline void throwErrno(const char* operation)
{
    throw std::system_error(errno, std::generic_category(), operation);
}

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

} // namespace MirrowvaleAuthenticator
