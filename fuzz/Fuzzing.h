#pragma once

#include "core/AuthToken.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

/// The entry point of libFuzzer: one call for each input, which lies in memory of exactly its size.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace MirrowvaleAuthenticator::Fuzzing {

/// Reports a find where what must hold for every input does not.
inline void require(bool holds, const char* claim)
{
    if (!holds) {
        std::fprintf(stderr, "Does not hold: %s\n", claim);
        std::abort();
    }
}

inline std::string_view text(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

/// Every field to the bit: the record's own equality takes texts that differ in bytes for equal.
inline auto fieldsOf(const AuthToken& token)
{
    return std::tuple(token.id.bytes, token.kind, token.issuer, token.account, token.secretBase32,
                      token.algorithm, token.digits, token.period, token.counter,
                      std::bit_cast<std::uint64_t>(token.createdAt.secondsSinceReferenceDate()));
}
using Fields = decltype(fieldsOf(AuthToken()));

/// Well-formed UTF-8 by the letter of RFC 3629: no overlong form, no surrogate, nothing above U+10FFFF.
inline bool isWellFormedUTF8(std::string_view text)
{
    while (!text.empty()) {
        const auto lead = static_cast<unsigned char>(text[0]);
        const auto marks = static_cast<std::size_t>(std::countl_one(lead));
        const auto length = marks == 0 ? 1 : marks;
        if (marks == 1 || marks > 4 || text.size() < length) {
            return false;
        }
        std::uint32_t scalar = marks == 0 ? lead : lead & (0x7fU >> marks);
        for (const char next : text.substr(1, length - 1)) {
            if ((static_cast<unsigned char>(next) & 0xc0U) != 0x80U) {
                return false;
            }
            scalar = scalar << 6 | (static_cast<unsigned char>(next) & 0x3fU);
        }
        constexpr std::uint32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
        if (scalar < least[length] || (scalar >= 0xd800 && scalar < 0xe000) || scalar > 0x10ffff) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

/// Percent-decoding of text held as a whole, escape by escape.
inline std::optional<std::string> naivelyDecoded(std::string text)
{
    for (auto escape = text.find('%'); escape != std::string::npos; escape = text.find('%', escape + 1)) {
        const auto digits = text.substr(escape + 1, 2);
        if (digits.size() < 2 || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
            return std::nullopt;
        }
        text.replace(escape, 3, 1, static_cast<char>(std::stoi(digits, nullptr, 16)));
    }
    return isWellFormedUTF8(text) ? std::optional(text) : std::nullopt;
}

} // namespace MirrowvaleAuthenticator::Fuzzing
