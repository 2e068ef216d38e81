#pragma once

#include "core/AuthToken.h"
#include "platform/text/LocalizedError.h"

#include <string_view>

namespace MirrowvaleAuthenticator {

/// Why a text is not a provisioning URI.
class OTPAuthParserError : public LocalizedError {
public:
    enum class Case {
        invalidURL, ///< no URI, another scheme, or a parameter that is repeated or cannot be read
        missingSecret,
        unsupportedType, ///< neither "totp" nor "hotp"
    };

    explicit OTPAuthParserError(Case which);

    friend bool operator==(const OTPAuthParserError& left, const OTPAuthParserError& right)
    {
        return left.which_ == right.which_;
    }

private:
    Case which_;
};

/// Reads an `otpauth://` provisioning URI into a new token.
///
/// Unknown algorithm names and unreadable numbers fall back to SHA1, 6 digits, 30 seconds and counter 0. One
/// of the six parameters that occurs more than once, or whose value is not UTF-8, fails, since a credential
/// is never guessed; other parameters are ignored. Secret, digits and period are not judged here.
/// @param text  a URI (RFC 3986), already trimmed
/// @param id, createdAt  what a URI does not hold
/// @throws OTPAuthParserError  the first check that fails: URI and scheme, type, parameters, secret
AuthToken parseOTPAuthURI(std::string_view text, const UUID& id, Date createdAt);

/// The same, with a fresh `id` and the current instant.
AuthToken parseOTPAuthURI(std::string_view text);

} // namespace MirrowvaleAuthenticator
