#include "platform/credentials/ItemName.h"

#include "platform/credentials/Status.h"
#include "platform/text/Hexadecimal.h"

namespace MirrowvaleAuthenticator {

namespace {

const SecretString& requireText(const SecDictionary& entries, std::string_view key)
{
    const auto found = entries.find(key);
    const auto* text = found == entries.end() ? nullptr : std::get_if<SecretString>(&found->second);
    if (text == nullptr) {
        throw StatusError{errSecParam};
    }
    return *text;
}

} // namespace

ItemName requireName(const SecDictionary& entries)
{
    if (requireText(entries, kSecClass) != kSecClassGenericPassword) {
        throw StatusError{errSecParam};
    }
    return {requireText(entries, kSecAttrService), requireText(entries, kSecAttrAccount)};
}

const SecretString& requireData(const SecDictionary& entries)
{
    return requireText(entries, kSecValueData);
}

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
