#pragma once

#include <string>

namespace MirrowvaleAuthenticator {

/// The value of a hexadecimal digit in either case, or -1 for any other character.
constexpr int hexadecimalValue(char character)
{
    if (character >= '0' && character <= '9') {
        return character - '0';
    }
    const auto lower = static_cast<char>(character | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/// Appends the two digits of a byte, in upper case.
inline void appendHexadecimal(std::string& text, unsigned char byte)
{
    constexpr auto digits = "0123456789ABCDEF";
    text += {digits[byte >> 4], digits[byte & 0x0f]};
}

} // namespace MirrowvaleAuthenticator
