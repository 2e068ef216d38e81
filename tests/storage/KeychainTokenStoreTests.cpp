#include "storage/KeychainTokenStore.h"

#include "core/StoredForm.h"
#include "tests/support/ScriptedCredentialStore.h"
#include "tests/support/Tokens.h"

#include <gtest/gtest.h>

namespace MirrowvaleAuthenticator {

TEST(KeychainStore, loadsAndSavesTheOneItem)
{
    using Call = ScriptedCredentialStore::Call;
    using enum ScriptedCredentialStore::Operation;
    ScriptedCredentialStore credentials;
    const CredentialStoreOverride inPlace(credentials);
    const KeychainTokenStore store("service", "vault");
    const Call search{copyMatching, itemSearch("service", "vault"), {}};
    const auto updateCall = [](std::string_view data) {
        return Call{update, itemName("service", "vault"), itemContent(data)};
    };
    const Call addCall{add, {}, item("service", "vault", "[]")};
    EXPECT_TRUE(credentials.calls.empty()) << "construction touches nothing";
    EXPECT_TRUE(store.load().empty());
    store.save({});
    const std::vector tokens = {tokenNamed("b"), tokenNamed("a")};
    store.save(tokens);
    credentials.put("service", "other", "[]");
    EXPECT_EQ(store.load(), tokens);
    EXPECT_EQ(credentials.calls,
              (std::vector{search, updateCall("[]"), addCall, updateCall(encodeTokens(tokens)), search}));
    credentials.oddResult.emplace();
    EXPECT_TRUE(store.load().empty()) << "an item without data";
}

} // namespace MirrowvaleAuthenticator
