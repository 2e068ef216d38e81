#include "storage/KeychainTokenStore.h"

#include "core/StoredForm.h"
#include "tests/support/KeychainEntries.h"
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

/// The message of the keychain failure that `run` ends with.
template <typename Run>
std::string keychainFailure(Run run)
{
    try {
        run();
    } catch (const KeychainTokenStoreError& error) {
        EXPECT_EQ(localizedDescription(error), error.errorDescription());
        return error.errorDescription();
    }
    return {};
}

} // namespace

TEST_F(KeychainStore, loadSearchesForTheOneItem)
{
    EXPECT_TRUE(credentials.calls.empty()) << "construction touches nothing";
    EXPECT_TRUE(store.load().empty());
    EXPECT_EQ(credentials.calls, Calls{search});

    const std::vector tokens = {tokenNamed("b"), tokenNamed("a")};
    credentials.put("service", "vault", encodeTokens(tokens));
    credentials.put("service", "other", "[]");
    EXPECT_EQ(store.load(), tokens);
    EXPECT_EQ(credentials.calls, (Calls{search, search}));
}

TEST_F(KeychainStore, saveUpdatesTheItemOrAddsIt)
{
    store.save({});
    EXPECT_EQ(credentials.calls, (Calls{updateCall("[]"), addCall("vault", "[]")}));
    EXPECT_TRUE(store.load().empty());

    credentials.calls.clear();
    const std::vector tokens = {tokenNamed("b"), tokenNamed("a")};
    store.save(tokens);
    EXPECT_EQ(credentials.calls, Calls{updateCall(encodeTokens(tokens))});
    EXPECT_EQ(credentials.entries("service", "vault"), item("service", "vault", encodeTokens(tokens)));
    EXPECT_EQ(credentials.itemCount(), 1U);
    EXPECT_EQ(store.load(), tokens);
}

TEST_F(KeychainStore, aSearchWithoutDataIsAnEmptyList)
{
    credentials.put("service", "vault", "not looked at");
    credentials.handBackAlways(SecResult());
    EXPECT_TRUE(store.load().empty());
}

TEST_F(KeychainStore, passesOtherStatusesOn)
{
    for (const OSStatus status :
         {errSecDuplicateItem, errSecInteractionNotAllowed, errSecParam, 7,
          std::numeric_limits<OSStatus>::min(), std::numeric_limits<OSStatus>::max()}) {
        const auto message = "Keychain operation failed with status " + std::to_string(status) + ".";
        credentials.answerNext(Operation::copyMatching, status);
        EXPECT_EQ(keychainFailure([&] { store.load(); }), message);

        credentials.calls.clear();
        credentials.answerNext(Operation::update, status);
        EXPECT_EQ(keychainFailure([&] { store.save({}); }), message);
        EXPECT_EQ(credentials.calls, Calls{updateCall("[]")}) << "no add is tried";

        credentials.answerNext(Operation::add, status);
        EXPECT_EQ(keychainFailure([&] { store.save({}); }), message);
    }
    credentials.answerNext(Operation::add, errSecItemNotFound);
    EXPECT_EQ(keychainFailure([&] { store.save({}); }), "Keychain operation failed with status -25300.");
    EXPECT_EQ(credentials.itemCount(), 0U);
    EXPECT_EQ(KeychainTokenStoreError(-25299).unexpectedStatus(), -25299);
}

TEST_F(KeychainStore, dataThatIsNoListFailsAndStays)
{
    for (const auto* data : {"", "{}", "[", "[{}]", "\xff"}) {
        credentials.put("service", "vault", data);
        EXPECT_THROW(store.load(), StoredFormError) << data;
        EXPECT_EQ(credentials.data("service", "vault"), data);
    }
}

TEST_F(KeychainStore, whatCannotBeWrittenTouchesNothing)
{
    auto token = tokenNamed("\xff");
    EXPECT_THROW(store.save({token}), StoredFormError);
    token = tokenNamed("a");
    token.createdAt = Date::fromSecondsSinceReferenceDate(std::numeric_limits<double>::infinity());
    EXPECT_THROW(store.save({token}), StoredFormError);
    EXPECT_TRUE(credentials.calls.empty());
}

TEST_F(KeychainStore, setAsideCopiesByteForByteAndOverwritesNothing)
{
    using namespace std::string_literals;
    store.setAside();
    EXPECT_EQ(credentials.itemCount(), 0U);

    const auto data = "[{\0\xff damaged"s;
    credentials.put("service", "vault", data);
    credentials.put("service", "vault.unreadable-1", "earlier");
    credentials.calls.clear();
    store.setAside();
    EXPECT_EQ(credentials.calls,
              (Calls{search, addCall("vault.unreadable-1", data), addCall("vault.unreadable-2", data)}));
    EXPECT_EQ(credentials.data("service", "vault"), data);
    EXPECT_EQ(credentials.data("service", "vault.unreadable-1"), "earlier");
    EXPECT_EQ(credentials.entries("service", "vault.unreadable-2"),
              item("service", "vault.unreadable-2", data));

    const auto locked = "Keychain operation failed with status -25308.";
    credentials.answerNext(Operation::add, errSecInteractionNotAllowed);
    EXPECT_EQ(keychainFailure([&] { store.setAside(); }), locked);
    credentials.answerNext(Operation::copyMatching, errSecInteractionNotAllowed);
    EXPECT_EQ(keychainFailure([&] { store.setAside(); }), locked);
}

} // namespace MirrowvaleAuthenticator
