#include "platform/credentials/SealedFileCredentialStore.h"

#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

namespace MirrowvaleAuthenticator {

TEST(SealedFileStore, writesOverNothingThatItHasNotRead)
{
    const TemporaryHome home;
    SealedFileCredentialStore ours(home.data(), home.state());
    SealedFileCredentialStore theirs(home.data(), home.state()); // as of another process
    const ItemName name{"service", "vault"};
    SecResult result;
    EXPECT_EQ(ours.update(name, "early"), errSecItemNotFound);
    EXPECT_FALSE(std::filesystem::exists(home.data())) << "nothing is written before there is an item";
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
