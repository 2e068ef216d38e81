#include "platform/EmbeddedCredentialStore.h"

#include "tests/support/KeychainEntries.h"
#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

namespace MirrowvaleAuthenticator {

TEST(EmbeddedStore, behavesLikeACredentialStore)
{
    const TemporaryHome home;
    EmbeddedCredentialStore store(home.data(), home.state());
    constexpr auto service = "org.test/service name.tokens";
    const auto add = [&](const char* name, const char* data) { return store.add(item(service, name, data)); };
    const auto update = [&](const char* name, std::string_view data) {
        return store.update(itemName(service, name), itemContent(data));
    };
    SecResult result;
    const auto found = [&](const char* name) {
        return store.copyMatching(itemSearch(service, name), result) == errSecItemNotFound
            ? "nothing"
            : std::string(std::get<SecretString>(result));
    };
    EXPECT_EQ(found("vault"), "nothing");
    EXPECT_EQ(update("vault", "early"), errSecItemNotFound);
    EXPECT_FALSE(std::filesystem::exists(home.data())) << "nothing is written before there is an item";
    EXPECT_EQ(add("vault", "one"), errSecSuccess);
    EXPECT_EQ(add("vault", "two"), errSecDuplicateItem);
    EXPECT_EQ(found("vault"), "one");
    EXPECT_EQ(add("../vault", "other"), errSecSuccess);
    for (const auto& data : {std::string(), std::string("\0\xff\n", 3), std::string(3'000'000, 'x')}) {
        EXPECT_EQ(update("vault", data), errSecSuccess);
        EXPECT_TRUE(found("vault") == data);
    }
    EXPECT_EQ(found("../vault"), "other");
    for (const auto* name : {"", "Vault", "vault3", "vault/", "..%2Fvault"}) {
        EXPECT_EQ(found(name), "nothing") << name;
        EXPECT_EQ(update(name, "x"), errSecItemNotFound) << name;
    }
    EXPECT_EQ(store.copyMatching(itemSearch("org.test/service", "vault"), result), errSecItemNotFound);
    for (const auto key : {kSecClass, kSecAttrService, kSecAttrAccount}) {
        auto nameless = item(service, "vault4", "x");
        nameless.erase(key);
        EXPECT_EQ(store.add(nameless), errSecParam) << key;
        EXPECT_EQ(store.update(nameless, itemContent("x")), errSecParam) << key;
        EXPECT_EQ(store.copyMatching(nameless, result), errSecParam) << key;
    }
}

TEST(PrivateFolder, liesWhereTheEnvironmentSays)
{
    const TemporaryHome home;
    EXPECT_EQ(dataFolderPath(), home.data());
    EXPECT_EQ(stateFolderPath(), home.state());
    for (const auto* ignored : {"", "relative/path"}) {
        setenv("XDG_DATA_HOME", ignored, 1);
        setenv("XDG_STATE_HOME", ignored, 1);
        EXPECT_EQ(dataFolderPath(), home.root / "home/.local/share/mirrowvale-authenticator");
        EXPECT_EQ(stateFolderPath(), home.root / "home/.local/state/mirrowvale-authenticator");
    }
}

} // namespace MirrowvaleAuthenticator
