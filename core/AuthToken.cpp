#include "core/AuthToken.h"

#include "platform/text/Text.h"

#include <algorithm>

namespace MirrowvaleAuthenticator {

namespace {

template <typename Case, std::size_t count>
std::optional<Case> caseWithRawValue(const std::array<Case, count>& allCases, std::string_view text)
{
    const auto found = std::ranges::find_if(allCases, [&](Case which) { return rawValue(which) == text; });
    return found == allCases.end() ? std::nullopt : std::optional(*found);
}

} // namespace

std::string_view rawValue(AuthToken::Kind kind)
{
    switch (kind) {
    case AuthToken::Kind::totp:
        return "totp";
    case AuthToken::Kind::hotp:
        return "hotp";
    }
    __builtin_unreachable();
}

std::string_view rawValue(AuthToken::Algorithm algorithm)
{
    switch (algorithm) {
    case AuthToken::Algorithm::sha1:
        return "SHA1";
    case AuthToken::Algorithm::sha256:
        return "SHA256";
    case AuthToken::Algorithm::sha512:
        return "SHA512";
    }
    __builtin_unreachable();
}

std::optional<AuthToken::Kind> kindFromRawValue(std::string_view rawValue)
{
    return caseWithRawValue(allKinds, rawValue);
}

std::optional<AuthToken::Algorithm> algorithmFromRawValue(std::string_view rawValue)
{
    return caseWithRawValue(allAlgorithms, rawValue);
}

bool operator==(const AuthToken& left, const AuthToken& right)
{
    return left.id == right.id && left.kind == right.kind && canonicallyEqual(left.issuer, right.issuer)
        && canonicallyEqual(left.account, right.account)
        && canonicallyEqual(left.secretBase32, right.secretBase32) && left.algorithm == right.algorithm
        && left.digits == right.digits && left.period == right.period && left.counter == right.counter
        && left.createdAt == right.createdAt;
}

} // namespace MirrowvaleAuthenticator
