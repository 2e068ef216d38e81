#include "core/Base32.h"
#include "fuzz/Fuzzing.h"
#include "platform/text/Text.h"

#include <algorithm>
#include <optional>
#include <vector>

using namespace MirrowvaleAuthenticator;

namespace {

struct Outcome {
    SecretBytes bytes;
    std::optional<std::string> offender;

    bool operator==(const Outcome&) const = default;
};

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZ234567"; // RFC 4648, section 6

/// Character by character, with the bits written out one by one.
Outcome slowlyDecoded(std::string_view text)
{
    auto cleaned = uppercased(text);
    std::erase_if(cleaned, [](char byte) { return byte == ' ' || byte == '='; });
    std::string bits;
    for (const auto character : characters(cleaned)) {
        const auto composed = canonicalComposition(character);
        const auto found = std::ranges::find_if(
            alphabet, [&](char entry) { return composed == std::string_view(&entry, 1); });
        if (found == alphabet.end()) {
            return {{}, std::string(character)};
        }
        for (auto value = found - alphabet.begin(), bit = std::ptrdiff_t{16}; bit > 0; bit /= 2) {
            bits += (value & bit) != 0 ? '1' : '0';
        }
    }
    Outcome outcome;
    for (std::size_t start = 0; start + 8 <= bits.size(); start += 8) {
        outcome.bytes.push_back(static_cast<std::uint8_t>(std::stoul(bits.substr(start, 8), nullptr, 2)));
    }
    return outcome;
}

Outcome decoded(std::string_view text)
{
    std::vector<std::uint8_t> memory(base32DecodedCapacity(text)); // no byte more than promised
    try {
        memory.resize(decodeBase32(text, memory));
        const auto bytes = decodeBase32(text);
        Fuzzing::require(std::ranges::equal(bytes, memory), "the caller's memory gets the same");
        return {bytes, {}};
    } catch (const Base32Error& error) {
        Fuzzing::require(localizedDescription(error)
                             == "Invalid Base32 character: " + error.invalidCharacter(),
                         "the message names the character");
        return {{}, error.invalidCharacter()};
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto text = Fuzzing::text(data, size);
    Fuzzing::require(decoded(text) == slowlyDecoded(text), "both paths agree");
    return 0;
}
