#pragma once

#include "core/AuthToken.h"

#include <string>
#include <utility>

namespace MirrowvaleAuthenticator {

/// A time-based token with a random id and a secret that gives codes.
inline AuthToken tokenNamed(std::string issuer, std::string account = "account", std::uint64_t counter = 0)
{
    AuthToken token;
    token.id = UUID::random();
    token.issuer = std::move(issuer);
    token.account = std::move(account);
    token.secretBase32 = "GEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQ";
    token.counter = counter;
    token.createdAt = Date::fromSecondsSinceReferenceDate(1);
    return token;
}

} // namespace MirrowvaleAuthenticator
