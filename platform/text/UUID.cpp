#include "platform/text/UUID.h"

#include "platform/crypto/RandomBytes.h"
#include "platform/text/Hexadecimal.h"

#include <cstddef>

namespace MirrowvaleAuthenticator {

namespace {

constexpr bool hasHyphenBefore(std::size_t byteIndex)
{
    return byteIndex == 4 || byteIndex == 6 || byteIndex == 8 || byteIndex == 10;
}

} // namespace

UUID UUID::random()
{
    UUID id;
    fillWithRandomBytes(id.bytes);
    id.bytes[6] = static_cast<std::uint8_t>((id.bytes[6] & 0x0f) | 0x40); // version 4
    id.bytes[8] = static_cast<std::uint8_t>((id.bytes[8] & 0x3f) | 0x80); // RFC 4122 variant
    return id;
}

std::optional<UUID> UUID::fromString(std::string_view text)
{
    if (text.size() != 36) {
        return std::nullopt;
    }
    UUID id;
    std::size_t position = 0;
    for (std::size_t index = 0; index < id.bytes.size(); ++index) {
        if (hasHyphenBefore(index) && text[position++] != '-') {
            return std::nullopt;
        }
        const int high = hexadecimalValue(text[position++]);
        const int low = hexadecimalValue(text[position++]);
        if (high < 0 || low < 0) {
            return std::nullopt;
        }
        id.bytes[index] = static_cast<std::uint8_t>(high << 4 | low);
    }
    return id;
}

std::string UUID::string() const
{
    std::string text;
    text.reserve(36);
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        if (hasHyphenBefore(index)) {
            text += '-';
        }
        appendHexadecimal(text, bytes[index]);
    }
    return text;
}

} // namespace MirrowvaleAuthenticator
