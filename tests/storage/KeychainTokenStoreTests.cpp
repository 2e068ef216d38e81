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
    const ItemName name{"service", "vault"};
    EXPECT_TRUE(credentials.calls.empty()) << "construction touches nothing";
    EXPECT_TRUE(store.load().tokens.empty());
    store.save({});
    const std::vector tokens = {tokenNamed("b"), tokenNamed("a")};
    store.save(tokens);
    credentials.items[{"service", "other"}] = "[]";
    EXPECT_EQ(store.load().tokens, tokens);
    EXPECT_EQ(credentials.calls,
              (std::vector{Call{read, name}, Call{update, name, "[]"}, Call{add, name, "[]"},
                           Call{update, name, encodeTokens(tokens)}, Call{read, name}}));
    credentials.hasData = false;
    EXPECT_TRUE(store.load().tokens.empty()) << "an item without data";
    EXPECT_EQ(store.load().failure, "");
}

TEST(Keychain, takesOnlyEntriesThatNameAGenericPassword)
{
    ScriptedCredentialStore credentials;
    const CredentialStoreOverride inPlace(credentials);
    const SecDictionary whole{{kSecClass, std::string(kSecClassGenericPassword)},
                              {kSecAttrService, std::string("service")},
                              {kSecAttrAccount, std::string("vault")},
                              {kSecValueData, SecretString("[]")}};
    SecResult result;
    for (const auto key : {kSecClass, kSecAttrService, kSecAttrAccount}) {
        auto damaged = whole;
        damaged[key] = true;
        EXPECT_EQ(SecItemAdd(damaged), errSecParam) << key;
        damaged.erase(key);
        EXPECT_EQ(SecItemUpdate(damaged, whole), errSecParam) << key;
        EXPECT_EQ(SecItemCopyMatching(damaged, result), errSecParam) << key;
    }
    EXPECT_EQ(SecItemUpdate(whole, {}), errSecParam);
    EXPECT_TRUE(credentials.calls.empty());
    EXPECT_EQ(SecItemAdd(whole), errSecSuccess);
}

} // namespace MirrowvaleAuthenticator
