#include "bench/SampleTokens.h"

#include "core/Base32.h"

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <string_view>

namespace MirrowvaleAuthenticator {

namespace {

constexpr std::array<std::string_view, 12> services{
    "Northwind Mail", "Harbour Bank", "Cloudberry",   "Tide Games", "Lantern",     "Fjord Post",
    "Kestrel Cloud",  "Café Olé",     "Mosaic Forum", "Quarry",     "Slate Notes", "Wren"};

AuthToken sampleToken(std::size_t number, std::mt19937_64& random)
{
    const auto drawn = [&random](std::size_t count) { return static_cast<std::size_t>(random() % count); };
    AuthToken token;
    token.id = UUID::random();
    token.issuer = std::string(services[drawn(services.size())]) + ' ' + std::to_string(drawn(1000));
    token.account = "person" + std::to_string(number) + "@example.com";
    token.secretBase32.resize(32);
    std::ranges::generate(token.secretBase32, [&] { return base32Alphabet[drawn(base32Alphabet.size())]; });
    token.createdAt =
        Date::fromSecondsSinceReferenceDate(7e8 + static_cast<double>(drawn(100'000'000'000)) / 1000);
    return token;
}

} // namespace

std::vector<AuthToken> sampleTokens(std::size_t count)
{
    std::mt19937_64 random(count);
    std::vector<AuthToken> tokens;
    tokens.reserve(count);
    for (std::size_t number = 0; number < count; ++number) {
        tokens.push_back(sampleToken(number, random));
    }
    return tokens;
}

} // namespace MirrowvaleAuthenticator
