#include "fuzz/Fuzzing.h"
#include "platform/text/Text.h"

using namespace MirrowvaleAuthenticator;

namespace {

std::string escaped(std::string_view text)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::string result;
    for (const char byte : text) {
        const auto value = static_cast<unsigned char>(byte);
        result += {'%', digits[value >> 4], digits[value & 0x0f]};
    }
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto text = Fuzzing::text(data, size);
    Fuzzing::require(removingPercentEncoding(text) == Fuzzing::naivelyDecoded(std::string(text)),
                     "both paths agree");
    const auto expected = Fuzzing::isWellFormedUTF8(text) ? std::optional(std::string(text)) : std::nullopt;
    Fuzzing::require(removingPercentEncoding(escaped(text)) == expected, "what was escaped comes back");
    return 0;
}
