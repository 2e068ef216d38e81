#pragma once

#include <cstdint>
#include <span>

namespace MirrowvaleAuthenticator {

/// Fills `bytes` from the kernel's random source (getrandom(2)).
/// @throws std::system_error where the kernel has none to give
void fillWithRandomBytes(std::span<std::uint8_t> bytes);

} // namespace MirrowvaleAuthenticator
