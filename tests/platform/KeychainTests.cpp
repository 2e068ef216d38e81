#include "platform/keychain/Keychain.h"

#include "tests/support/ScriptedCredentialStore.h"

#include <gtest/gtest.h>

namespace MirrowvaleAuthenticator {

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
