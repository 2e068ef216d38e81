#pragma once

#include "core/StoredForm.h"
#include "platform/keychain/Keychain.h"
#include "storage/TokenStore.h"
#include "tests/support/ScriptedCredentialStore.h"
#include "tests/support/Tokens.h"

#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

namespace MirrowvaleAuthenticator {

using Operation = ScriptedCredentialStore::Operation;
using Names = std::vector<std::string>;
using MaybeText = std::optional<std::string>;

constexpr auto lockedMessage = "Keychain operation failed with status -25308.";

inline Names issuers(const std::vector<AuthToken>& tokens)
{
    Names names;
    for (const auto& token : tokens) {
        names.push_back(token.issuer);
    }
    return names;
}

class TokenStoreTest : public testing::Test {
protected:
    TokenStoreTest()
    {
        reserve.isShared = true; // as the sealed files are
        credentials.kept = &reserve;
    }

    static ItemName aside(int number)
    {
        return {tokenStoreItem.service, "vault.unreadable-" + std::to_string(number)};
    }
    void put(std::string_view data) { credentials.items[tokenStoreItem] = data; }
    void put(const std::vector<AuthToken>& tokens) { put(encodeTokens(tokens)); }
    void keep(const std::vector<AuthToken>& tokens) { reserve.items[tokenStoreItem] = encodeTokens(tokens); }
    std::vector<AuthToken> storedTokens() const { return decodeTokens(credentials.items.at(tokenStoreItem)); }
    std::vector<AuthToken> keptTokens() const
    {
        const auto found = reserve.items.find(tokenStoreItem);
        return found == reserve.items.end() ? std::vector<AuthToken>() : decodeTokens(found->second);
    }
    std::size_t writes() { return credentials.calls[Operation::update] + credentials.calls[Operation::add]; }
    static void append(TokenStore& store, const AuthToken& token)
    {
        store.tokens.modify([&](auto& tokens) { tokens.push_back(token); });
        store.persist();
    }

    ScriptedCredentialStore reserve;
    ScriptedCredentialStore credentials;
    const CredentialStoreOverride inPlace{credentials};
};

} // namespace MirrowvaleAuthenticator
