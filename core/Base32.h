#pragma once

#include "platform/crypto/SecretMemory.h"
#include "platform/text/LocalizedError.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace MirrowvaleAuthenticator {

/// The characters of RFC 4648, section 6; a character's value is its position.
inline constexpr std::string_view base32Alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZ234567";

/// A character that is not Base32.
class Base32Error : public LocalizedError {
public:
    /// @param character  the whole user-perceived character, upper-cased
    explicit Base32Error(std::string character);

    const std::string& invalidCharacter() const { return invalidCharacter_; }

private:
    std::string invalidCharacter_;
};

/// Decodes Base32 text (RFC 4648, section 6) in either case; blanks (U+0020) and "=" are ignored wherever
/// they are, left-over bits dropped.
/// @throws Base32Error  naming the first character that is not Base32
SecretBytes decodeBase32(std::string_view text);

/// The most bytes that `text` can decode to.
constexpr std::size_t base32DecodedCapacity(std::string_view text)
{
    return text.size() / 8 * 5 + text.size() % 8 * 5 / 8;
}

/// The same into memory of the caller's, for keys that never touch the heap.
/// @param output  at least `base32DecodedCapacity(text)` bytes
/// @returns the number of bytes written
/// @throws Base32Error  as above; what was written before it is the caller's to wipe
std::size_t decodeBase32(std::string_view text, std::span<std::uint8_t> output);

} // namespace MirrowvaleAuthenticator
