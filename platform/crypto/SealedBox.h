#pragma once

#include "platform/crypto/SecretMemory.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

/// Authenticated encryption of a whole file: ChaCha20-Poly1305 (RFC 8439) under a random nonce.
///
/// A box is the 8 bytes "MVSEAL01", the 12-byte nonce, the ciphertext, and the 16-byte tag. The first 8 bytes
/// and the caller's context are authenticated along with it.
namespace MirrowvaleAuthenticator {

inline constexpr std::size_t sealingKeySize = 32;
using SealingKey = std::span<const std::uint8_t, sealingKeySize>;

/// Seals `plaintext`.
/// @param context  what the box is for; it opens under the same context only
/// @throws std::system_error  where the kernel gives no random bytes
SecretString seal(SealingKey key, std::string_view context, std::string_view plaintext);

/// What was sealed, or nothing for anything that `seal` did not make with this key and context. It is
/// decrypted in the box's own memory.
std::optional<SecretString> unseal(SealingKey key, std::string_view context, SecretString box);

/// What tells a box from every other: its tag. The whole text where it is too short to be a box.
std::string_view tagOf(std::string_view box);

/// Whether `unseal` would succeed. Decrypts in pieces, and keeps no plaintext.
bool opens(SealingKey key, std::string_view context, std::string_view box);

} // namespace MirrowvaleAuthenticator
