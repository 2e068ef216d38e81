#include "platform/credentials/SealedFileCredentialStore.h"

#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

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

} // namespace MirrowvaleAuthenticator
