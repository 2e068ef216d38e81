#include "platform/credentials/SealedFileCredentialStore.h"

#include "platform/system/ApplicationFolders.h"
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
    const auto accounts = {"", "Vault", "vault", "vault3", "vault/", "vault+", "../vault", "..%2Fvault"};
    EXPECT_EQ(store.update({service, "vault"}, "early"), errSecItemNotFound);
    EXPECT_FALSE(std::filesystem::exists(home.data())) << "nothing is written before there is an item";
    for (const auto* account : accounts) {
        EXPECT_EQ(store.add({service, account}, account), errSecSuccess) << account;
    }
    SecResult result;
    for (const auto* account : accounts) {
        EXPECT_EQ(store.read({service, account}, Search::usual, result), errSecSuccess);
        EXPECT_EQ(result, std::string_view(account));
    }
    EXPECT_EQ(store.read({"org.test/service", "vault"}, Search::usual, result), errSecItemNotFound);
}

TEST(SealedFileStore, writesOverNothingThatItHasNotRead)
{
    const TemporaryHome home;
    SealedFileCredentialStore ours(home.data(), home.state());
    SealedFileCredentialStore theirs(home.data(), home.state()); // as of another process
    const ItemName name{"service", "vault"};
    SecResult result;
    ASSERT_EQ(ours.add(name, "[1]"), errSecSuccess);
    EXPECT_EQ(theirs.update(name, "[2]"), errSecInvalidItemRef);
    EXPECT_EQ(theirs.remove(name), errSecInvalidItemRef);
    EXPECT_EQ(theirs.read(name, Search::usual, result), errSecSuccess);
    EXPECT_EQ(theirs.update(name, "[2]"), errSecSuccess);
    EXPECT_EQ(ours.update(name, "[3]"), errSecInvalidItemRef);
    EXPECT_EQ(ours.read(name, Search::usual, result), errSecSuccess);
    EXPECT_EQ(result, "[2]");
    EXPECT_EQ(ours.update(name, "[3]"), errSecSuccess);
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
