#include "platform/crypto/RandomBytes.h"

#include <cerrno>
#include <sys/random.h>
#include <system_error>

namespace MirrowvaleAuthenticator {

void fillWithRandomBytes(std::span<std::uint8_t> bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = getrandom(bytes.data(), bytes.size(), 0);
        if (count >= 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "getrandom");
        }
    }
}

} // namespace MirrowvaleAuthenticator
