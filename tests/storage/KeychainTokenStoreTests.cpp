#include "storage/KeychainTokenStore.h"

#include "core/StoredForm.h"
#include "tests/support/ScriptedCredentialStore.h"
#include "tests/support/Tokens.h"

#include <gtest/gtest.h>
#include <limits>

namespace MirrowvaleAuthenticator {

namespace {

using Operation = ScriptedCredentialStore::Operation;
using Call = ScriptedCredentialStore::Call;
using Calls = std::vector<Call>;

class KeychainStore : public testing::Test {
protected:
    const Call search{Operation::copyMatching, itemSearch("service", "vault"), {}};

    static Call updateCall(std::string_view data)
    {
        return {Operation::update, itemName("service", "vault"), itemContent(data)};
    }
    static Call addCall(std::string_view account, std::string_view data)
    {
        return {Operation::add, {}, item("service", account, data)};
    }

    ScriptedCredentialStore credentials;
    const CredentialStoreOverride inPlace{credentials};
    const KeychainTokenStore store{"service", "vault"};
};

} // namespace

TEST_F(KeychainStore, loadsAndSavesTheOneItem)
{
    EXPECT_TRUE(credentials.calls.empty()) << "construction touches nothing";
    EXPECT_TRUE(store.load().empty());
    store.save({});
    const std::vector tokens = {tokenNamed("b"), tokenNamed("a")};
    store.save(tokens);
    credentials.put("service", "other", "[]");
    EXPECT_EQ(store.load(), tokens);
    EXPECT_EQ(
        credentials.calls,
        (Calls{search, updateCall("[]"), addCall("vault", "[]"), updateCall(encodeTokens(tokens)), search}));
    credentials.oddResult.emplace();
    EXPECT_TRUE(store.load().empty()) << "an item without data";
}

TEST_F(KeychainStore, failsWithTheStatusThatItWasGiven)
{
    credentials.answerNext(Operation::add, errSecItemNotFound);
    EXPECT_THROW(store.save({}), KeychainTokenStoreError);
    const KeychainTokenStoreError error(std::numeric_limits<OSStatus>::min());
    EXPECT_EQ(error.unexpectedStatus(), std::numeric_limits<OSStatus>::min());
    EXPECT_EQ(error.errorDescription(), "Keychain operation failed with status -2147483648.");
}

TEST_F(KeychainStore, setAsideCopiesByteForByteAndOverwritesNothing)
{
    using namespace std::string_literals;
    const auto data = "[{\0\xff damaged"s;
    store.setAside();
    credentials.put("service", "vault", data);
    credentials.put("service", "vault.unreadable-1", "earlier");
    store.setAside();
    EXPECT_EQ(
        credentials.calls,
        (Calls{search, search, addCall("vault.unreadable-1", data), addCall("vault.unreadable-2", data)}));
}

} // namespace MirrowvaleAuthenticator
