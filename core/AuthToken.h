#pragma once

#include "platform/crypto/HMAC.h"
#include "platform/text/Date.h"
#include "platform/text/UUID.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace MirrowvaleAuthenticator {

/// One one-time-password credential: what is needed to compute its codes and to show it.
///
/// The record enforces nothing; each value is judged where it is used.
struct AuthToken {
    enum class Kind {
        totp, ///< time-based (RFC 6238): the moving factor comes from the clock and `period`
        hotp, ///< counter-based (RFC 4226): the moving factor is `counter`
    };
    using Algorithm = HashFunction;

    UUID id; ///< identity of the token, also after any other field has changed
    Kind kind = Kind::totp; ///< the scheme
    std::string issuer; ///< name of the service; may be empty
    std::string account; ///< account name; may be empty
    std::string secretBase32; ///< the shared secret as Base32 text (RFC 4648)
    Algorithm algorithm = Algorithm::sha1; ///< hash function of the HMAC
    std::int64_t digits = 6; ///< decimal digits of a code; 6, 7 or 8 give codes
    std::int64_t period = 30; ///< TOTP time step in seconds; below 1 counts as 1
    std::uint64_t counter = 0; ///< HOTP moving factor
    Date createdAt; ///< when the token was created

    /// Field by field, in order; texts by Unicode canonical equivalence.
    friend bool operator==(const AuthToken& left, const AuthToken& right);
};

/// The cases of each enumeration in order, and their only textual form, which the stored form uses.
inline constexpr std::array allKinds{AuthToken::Kind::totp, AuthToken::Kind::hotp};
inline constexpr std::array allAlgorithms{AuthToken::Algorithm::sha1, AuthToken::Algorithm::sha256,
                                          AuthToken::Algorithm::sha512};
std::string_view rawValue(AuthToken::Kind kind);
std::string_view rawValue(AuthToken::Algorithm algorithm);

/// The case with exactly this raw value, or nothing: "sha1" is not an algorithm.
std::optional<AuthToken::Kind> kindFromRawValue(std::string_view rawValue);
std::optional<AuthToken::Algorithm> algorithmFromRawValue(std::string_view rawValue);

} // namespace MirrowvaleAuthenticator
