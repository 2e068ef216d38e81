#include "core/AuthToken.h"

#include <functional>
#include <gtest/gtest.h>

namespace MirrowvaleAuthenticator {

TEST(AuthToken, isEqualFieldByFieldWithTextsByCanonicalEquivalence)
{
    AuthToken token;
    token.issuer = "Café fi";
    token.account = "Ångström a\u0323\u0302";
    token.secretBase32 = "ABCK";
    token.createdAt = Date::fromSecondsSinceReferenceDate(1.5);
    EXPECT_EQ(token, AuthToken(token));

    auto decomposed = token;
    decomposed.issuer = "Cafe\u0301 fi";
    decomposed.account = "\u212Bngstro\u0308m a\u0302\u0323";
    decomposed.secretBase32 = "ABC\u212A";
    EXPECT_EQ(token, decomposed);

    const std::function<void(AuthToken&)> changes[] = {
        [](auto& changed) { changed.id.bytes[15] ^= 1; },
        [](auto& changed) { changed.kind = AuthToken::Kind::hotp; },
        [](auto& changed) { changed.issuer = "café fi"; },
        [](auto& changed) { changed.issuer = "Café \uFB01"; },
        [](auto& changed) { changed.account += ' '; },
        [](auto& changed) { changed.secretBase32 = "abck"; },
        [](auto& changed) { changed.algorithm = AuthToken::Algorithm::sha512; },
        [](auto& changed) { changed.digits = 8; },
        [](auto& changed) { changed.period = 31; },
        [](auto& changed) { changed.counter = 6; },
        [](auto& changed) { changed.createdAt = Date::fromSecondsSinceReferenceDate(1.5000000000000002); }};
    for (std::size_t change = 0; change < std::size(changes); ++change) {
        auto changed = token;
        changes[change](changed);
        EXPECT_FALSE(token == changed) << "change " << change;
    }
}

} // namespace MirrowvaleAuthenticator
