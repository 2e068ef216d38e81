#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace MirrowvaleAuthenticator {

/// A 128-bit identifier (RFC 4122).
struct UUID {
    std::array<std::uint8_t, 16> bytes{};

    /// A new version 4 identifier from the kernel's random source.
    static UUID random();

    /// Reads the 36-character form, hexadecimal digits in either case; nothing for any other text.
    static std::optional<UUID> fromString(std::string_view text);

    /// The 36-character form, hexadecimal digits in upper case.
    std::string string() const;

    friend bool operator==(const UUID&, const UUID&) = default;
    friend bool operator<(const UUID& left, const UUID& right) { return left.bytes < right.bytes; }
};

} // namespace MirrowvaleAuthenticator
