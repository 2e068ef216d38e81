#pragma once

#include "core/AuthToken.h"
#include "platform/text/Date.h"
#include "platform/text/LocalizedError.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace MirrowvaleAuthenticator {

/// Why a token has no code.
class OTPError : public LocalizedError {
public:
    enum class Case {
        invalidSecret, ///< the secret decodes to no bytes
        unsupportedDigits, ///< the number of digits is not 6, 7 or 8
        instantOutOfRange, ///< the instant is before 1970, not finite, or past the 64-bit step count
    };

    explicit OTPError(Case which);

    friend bool operator==(const OTPError& left, const OTPError& right)
    {
        return left.which_ == right.which_;
    }

private:
    Case which_;
};

/// The HOTP value of RFC 4226 for one moving factor.
///
/// @param secretBase32  the shared secret as Base32 text (RFC 4648), decoded anew on each call
/// @param counter       the moving factor; the MAC is that of its eight bytes, most significant first
/// @param digits        6, 7 or 8
/// @returns exactly `digits` decimal digits, leading zeros kept
/// @throws OTPError     `unsupportedDigits`, before the secret is looked at; `invalidSecret`: no bytes
/// @throws Base32Error  naming the first character that is not Base32
std::string generateOTP(std::string_view secretBase32, std::uint64_t counter, AuthToken::Algorithm algorithm,
                        std::int64_t digits);

/// The token's code at an instant: HOTP (RFC 4226) of its counter, or TOTP (RFC 6238) of the clock.
/// @throws OTPError, Base32Error  as `generateOTP`
/// @throws OTPError               `instantOutOfRange` for a TOTP token where the instant has no step count
std::string currentCode(const AuthToken& token, Date instant);

/// The whole seconds left in the token's current time step, 1 to its length; 0 for an HOTP token.
/// Never fails: before 1970 it counts to the next multiple of the step, and an instant beyond 64-bit seconds
/// reads as the start of one.
std::int64_t secondsRemaining(const AuthToken& token, Date instant);

} // namespace MirrowvaleAuthenticator
