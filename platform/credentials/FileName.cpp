#include "platform/credentials/FileName.h"

#include "platform/text/Hexadecimal.h"

namespace MirrowvaleAuthenticator {

std::string fileNamePart(std::string_view text)
{
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.-";
    std::string result;
    for (const char character : text) {
        if (plain.find(character) != std::string_view::npos) {
            result += character;
        } else {
            result += '%';
            appendHexadecimal(result, static_cast<unsigned char>(character));
        }
    }
    return result;
}

} // namespace MirrowvaleAuthenticator
