#pragma once

#include "storage/TokenStore.h"
#include "tests/support/ScriptedCredentialStore.h"
#include "tests/support/Tokens.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace MirrowvaleAuthenticator {

/// A token store over a credential store in memory.
class ScreenTest : public testing::Test {
protected:
    /// A token for each letter; the same letter gives the same id.
    static std::vector<AuthToken> tokensNamed(std::string_view letters)
    {
        std::vector<AuthToken> tokens;
        for (const char letter : letters) {
            tokens.push_back(tokenNamed(std::string(1, letter)));
            tokens.back().id.bytes.fill(static_cast<std::uint8_t>(letter));
        }
        return tokens;
    }

    void list(std::string_view letters) { store.tokens = tokensNamed(letters); }

    std::string listed() const
    {
        std::string issuers;
        for (const auto& token : *store.tokens) {
            issuers += token.issuer;
        }
        return issuers;
    }

    std::size_t saves() { return credentials.calls[ScriptedCredentialStore::Operation::update]; }

    ScriptedCredentialStore credentials;
    CredentialStoreOverride inPlace{credentials};
    TokenStore store;
};

} // namespace MirrowvaleAuthenticator
