#pragma once

#include <cerrno>

namespace MirrowvaleAuthenticator {

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

} // namespace MirrowvaleAuthenticator
