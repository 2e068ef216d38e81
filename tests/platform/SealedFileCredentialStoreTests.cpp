#include "platform/credentials/SealedFileCredentialStore.h"

#include "tests/support/KeychainEntries.h"
#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

namespace MirrowvaleAuthenticator {

TEST(SealedFileStore, keepsItemsApartWhateverTheirNames)
{
    const TemporaryHome home;
    SealedFileCredentialStore store(home.data(), home.state());
    constexpr auto service = "org.test/service name.tokens";
    const auto names = {"", "Vault", "vault", "vault3", "vault/", "vault+", "../vault", "..%2Fvault"};
    EXPECT_EQ(store.update(itemName(service, "vault"), itemContent("early")), errSecItemNotFound);
    EXPECT_FALSE(std::filesystem::exists(home.data())) << "nothing is written before there is an item";
    for (const auto* name : names) {
        EXPECT_EQ(store.add(item(service, name, name)), errSecSuccess) << name;
    }
    SecResult result;
    for (const auto* name : names) {
        EXPECT_EQ(store.copyMatching(itemSearch(service, name), result), errSecSuccess);
        EXPECT_EQ(std::get<SecretString>(result), std::string_view(name));
    }
    EXPECT_EQ(store.copyMatching(itemSearch("org.test/service", "vault"), result), errSecItemNotFound);
    for (const auto key : {kSecClass, kSecAttrService, kSecAttrAccount}) {
        auto nameless = item(service, "vault", "x");
        nameless.erase(key);
        EXPECT_EQ(store.add(nameless), errSecParam) << key;
        EXPECT_EQ(store.update(nameless, itemContent("x")), errSecParam) << key;
        EXPECT_EQ(store.copyMatching(nameless, result), errSecParam) << key;
    }
}

TEST(SealedFileStore, writesOverNothingThatItHasNotRead)
{
    const TemporaryHome home;
    SealedFileCredentialStore ours(home.data(), home.state());
    SealedFileCredentialStore theirs(home.data(), home.state()); // as of another process
    const auto name = itemName("service", "vault");
    const auto search = itemSearch("service", "vault");
    SecResult result;
    ASSERT_EQ(ours.add(item("service", "vault", "[1]")), errSecSuccess);
    EXPECT_EQ(theirs.copyMatching(name, result), errSecSuccess);
    EXPECT_EQ(theirs.update(name, itemContent("[2]")), errSecInvalidItemRef) << "looked for and not read";
    EXPECT_EQ(theirs.copyMatching(search, result), errSecSuccess);
    EXPECT_EQ(theirs.update(name, itemContent("[2]")), errSecSuccess);
    EXPECT_EQ(ours.update(name, itemContent("[3]")), errSecInvalidItemRef);
    EXPECT_EQ(ours.copyMatching(search, result), errSecSuccess);
    EXPECT_EQ(std::get<SecretString>(result), "[2]");
    EXPECT_EQ(ours.update(name, itemContent("[3]")), errSecSuccess);
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
    const std::filesystem::path accountsHome = getpwuid(geteuid())->pw_dir;
    setenv("HOME", "relative/path", 1);
    EXPECT_EQ(dataFolderPath(), accountsHome / ".local/share/mirrowvale-authenticator");
    unsetenv("HOME");
    EXPECT_EQ(stateFolderPath(), accountsHome / ".local/state/mirrowvale-authenticator");
}

} // namespace MirrowvaleAuthenticator
