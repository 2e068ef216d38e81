#include "platform/text/Text.h"

#include "fuzz/Fuzzing.h"

#include <algorithm>

using namespace MirrowvaleAuthenticator;
using Fuzzing::require;

namespace {

const LocalizedCaseInsensitiveOrder& order()
{
    static const LocalizedCaseInsensitiveOrder order;
    return order;
}

void checkWhatHoldsOfASCII(std::string_view text)
{
    require(order().sortKey(uppercased(text)) == order().sortKey(lowercased(text)), "case does not sort");
    const auto longer = std::string(text) + "é"; // which the library splits
    auto clusters = characters(longer);
    clusters.pop_back();
    require(characters(text) == clusters, "both paths see the same characters");
}

void checkWhatHoldsBeyondASCII(std::string_view text)
{
    const auto upper = uppercased(text);
    require(uppercased(upper) == upper, "upper case stays upper case");
    const auto lower = lowercased(text);
    require(lowercased(lower) == lower, "lower case stays lower case");
    require(Fuzzing::isWellFormedUTF8(upper + lower), "what comes out is UTF-8");

    const auto clusters = characters(text);
    require(std::ranges::none_of(clusters, &std::string_view::empty), "no character is empty");
    std::string joined;
    for (const auto cluster : clusters) {
        joined += cluster;
    }
    require(joined == text, "the characters are the text");

    const auto composed = canonicalComposition(text);
    require(canonicalComposition(composed) == composed, "what is composed stays as it is");
    require(Fuzzing::isWellFormedUTF8(composed), "what is composed is UTF-8");
    require(canonicallyEqual(text, composed), "composition keeps a text");
    require(order().sortKey(text) == order().sortKey(composed), "texts that are equal sort alike");
}

void checkTrimming(std::string_view text)
{
    const auto middle = trimmed(text);
    require(trimmed(middle) == middle, "trimming is done at once");
    require(text.find(middle) != std::string_view::npos, "trimming keeps a piece of the text");
    const std::string around(" \t\r\n\u0085\u00a0\u1680\u2028\u2029\u3000");
    if (Fuzzing::isWellFormedUTF8(text)) {
        require(trimmed(around + std::string(middle) + around) == middle, "every space is trimmed");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto text = Fuzzing::text(data, size);
    require(isValidUTF8(text) == Fuzzing::isWellFormedUTF8(text), "UTF-8 is told from other bytes");
    checkTrimming(text);
    if (std::ranges::all_of(text, [](char byte) { return (byte & 0x80) == 0; })) {
        checkWhatHoldsOfASCII(text);
    } else {
        checkWhatHoldsBeyondASCII(text);
    }
    const auto left = text.substr(0, size / 2);
    const auto right = text.substr(size / 2);
    require(canonicallyEqual(left, right) == (canonicalComposition(left) == canonicalComposition(right)),
            "equality is equality of compositions");
    return 0;
}
