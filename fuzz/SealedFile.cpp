#include "fuzz/Fuzzing.h"
#include "platform/crypto/SealedBox.h"

#include <algorithm>
#include <array>
#include <numeric>

using namespace MirrowvaleAuthenticator;
using Fuzzing::require;

namespace {

std::array<std::uint8_t, sealingKeySize> makeKey()
{
    std::array<std::uint8_t, sealingKeySize> key{};
    std::iota(key.begin(), key.end(), std::uint8_t{1});
    return key;
}

/// What a box holds; the path that only checks whether it opens must agree.
std::optional<SecretString> unsealed(SealingKey key, std::string_view context, const SecretString& box)
{
    auto opened = unseal(key, context, box);
    require(opens(key, context, box) == opened.has_value(), "both paths agree");
    return opened;
}

} // namespace

/// The first two bytes choose what is damaged, the third the length of the context, the fourth how often the
/// rest is repeated: both a file from elsewhere and the text to seal.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const auto key = makeKey();
    if (size < 4) {
        return 0;
    }
    const std::size_t choice = data[0] | static_cast<std::size_t>(data[1]) << 8;
    const auto rest = Fuzzing::text(data + 4, size - 4);
    const auto context = rest.substr(0, data[2] % 48);
    std::string text;
    for (int times = std::max<int>(data[3], 1); times > 0; --times) {
        text += rest;
    }
    require(!unsealed(SealingKey(key), context, SecretString(std::string_view(text))),
            "a file from elsewhere stays shut");

    const auto box = seal(SealingKey(key), context, text);
    require(box.size() == text.size() + 36, "a box is 36 bytes longer than what is in it");
    const auto opened = unsealed(SealingKey(key), context, box);
    require(opened && std::string_view(*opened) == text, "what was sealed comes back");

    auto damaged = box;
    damaged[choice / 8 % box.size()] ^= static_cast<char>(1 << choice % 8);
    require(!unsealed(SealingKey(key), context, damaged), "a flipped bit is noticed");
    damaged.assign(box, 0, choice % box.size());
    require(!unsealed(SealingKey(key), context, damaged), "a cut is noticed");
    damaged = box;
    damaged.insert(choice % (box.size() + 1), 1, static_cast<char>(choice));
    require(!unsealed(SealingKey(key), context, damaged), "an added byte is noticed");

    auto otherKey = key;
    otherKey[choice % otherKey.size()] ^= 0x10;
    require(!unsealed(SealingKey(otherKey), context, box), "another key does not open");
    require(!unsealed(SealingKey(key), std::string(context) + "x", box), "another context does not open");
    return 0;
}
