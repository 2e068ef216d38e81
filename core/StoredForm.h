#pragma once

#include "core/AuthToken.h"
#include "platform/crypto/SecretMemory.h"
#include "platform/text/LocalizedError.h"

#include <string_view>
#include <vector>

namespace MirrowvaleAuthenticator {

/// Tokens cannot be written as JSON, or a text is not a stored list.
class StoredFormError : public LocalizedError {
public:
    enum class Case { unwritable, unreadable };

    explicit StoredFormError(Case which);
};

/// The stored form of the list: a JSON array (RFC 8259) of one object per token, members in field order.
/// @throws StoredFormError  `unwritable` for a text that is not UTF-8 or an instant that is not finite
SecretString encodeTokens(const std::vector<AuthToken>& tokens);

/// Reads a stored list. Members come in any order; unknown ones are skipped, a missing, repeated or mistyped
/// one fails.
/// @throws StoredFormError  `unreadable`; no part of the list is returned
std::vector<AuthToken> decodeTokens(std::string_view json);

} // namespace MirrowvaleAuthenticator
