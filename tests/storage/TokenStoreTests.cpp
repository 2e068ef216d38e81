#include "storage/TokenStore.h"

#include "core/StoredForm.h"
#include "platform/keychain/Keychain.h"
#include "storage/TokenMerge.h"
#include "tests/support/ScriptedCredentialStore.h"
#include "tests/support/Tokens.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <tuple>

namespace MirrowvaleAuthenticator {

namespace {

using Operation = ScriptedCredentialStore::Operation;
using Names = std::vector<std::string>;
using MaybeText = std::optional<std::string>;

constexpr auto lockedMessage = "Keychain operation failed with status -25308.";

Names issuers(const std::vector<AuthToken>& tokens)
{
    Names names;
    for (const auto& token : tokens) {
        names.push_back(token.issuer);
    }
    return names;
}

/// Number of tokens, counter of the first, last error.
using Seen = std::vector<std::tuple<std::size_t, std::uint64_t, MaybeText>>;

/// What an observer finds in the store each time that a change is announced.
struct Announcements {
    explicit Announcements(TokenStore& store)
        : subscription(store.objectWillChange([this, &store] {
              seen.emplace_back(store.tokens->size(),
                                store.tokens->empty() ? 0 : store.tokens->front().counter, *store.lastError);
          }))
    {
    }

    Seen seen;
    ObservableObject::Subscription subscription;
};

class TokenStoreTest : public testing::Test {
protected:
    TokenStoreTest()
    {
        setenv("LC_ALL", "en_US.UTF-8", 1);
        reserve.isShared = true; // as the sealed files are
        credentials.kept = &reserve;
    }

    static ItemName aside(int number)
    {
        return {tokenStoreItem.service, "vault.unreadable-" + std::to_string(number)};
    }
    void put(std::string_view data) { credentials.items[tokenStoreItem] = data; }
    void put(const std::vector<AuthToken>& tokens) { put(encodeTokens(tokens)); }
    void keep(const std::vector<AuthToken>& tokens) { reserve.items[tokenStoreItem] = encodeTokens(tokens); }
    std::vector<AuthToken> storedTokens() const { return decodeTokens(credentials.items.at(tokenStoreItem)); }
    std::vector<AuthToken> keptTokens() const
    {
        const auto found = reserve.items.find(tokenStoreItem);
        return found == reserve.items.end() ? std::vector<AuthToken>() : decodeTokens(found->second);
    }
    std::size_t writes() const
    {
        return credentials.callCount(Operation::update) + credentials.callCount(Operation::add);
    }
    static void append(TokenStore& store, const AuthToken& token)
    {
        store.tokens.modify([&](auto& tokens) { tokens.push_back(token); });
        store.persist();
    }

    ScriptedCredentialStore reserve;
    ScriptedCredentialStore credentials;
    const CredentialStoreOverride inPlace{credentials};
};

} // namespace

TEST_F(TokenStoreTest, aLoadSortsByIssuerWithoutRegardToCaseAndWritesNothing)
{
    const std::string longName(300, 'x');
    const std::pair<Names, Names> table[] = {
        {{longName + "b", longName + "a", "y"}, {longName + "a", longName + "b", "y"}},
        {{"beta", "Alpha", "", "alpha"}, {"Alpha", "alpha", "beta", ""}},
        {{"Tokens", "token", "", "TOKEN", "toke"}, {"toke", "token", "", "TOKEN", "Tokens"}},
        {{"z", "Ö", "ö", "Zebra"}, {"Ö", "ö", "z", "Zebra"}},
    };
    for (const auto& [storedNames, loadedNames] : table) {
        std::vector<AuthToken> tokens;
        for (const auto& name : storedNames) {
            tokens.push_back(tokenNamed(name, "z" + std::to_string(9 - tokens.size())));
        }
        put(tokens);
        const TokenStore store;
        EXPECT_EQ(issuers(*store.tokens), loadedNames);
        EXPECT_EQ(*store.lastError, std::nullopt);
    }
    EXPECT_EQ(writes(), 0U);
    credentials.items.clear();
    EXPECT_TRUE(TokenStore().tokens->empty());
    EXPECT_EQ(*TokenStore().lastError, std::nullopt);
    EXPECT_EQ(writes(), 0U);
}

TEST_F(TokenStoreTest, tokensOfOneIssuerKeepTheirOrderHoweverMany)
{
    std::vector<AuthToken> tokens;
    for (std::uint64_t number = 0; number < 10'000; ++number) {
        tokens.push_back(tokenNamed("Issuer " + std::to_string(1'000 + number * 7919 % 1'000), "", number));
    }
    put(tokens);
    std::ranges::stable_sort(tokens, {}, &AuthToken::issuer);
    EXPECT_TRUE(*TokenStore().tokens == tokens);
}

TEST_F(TokenStoreTest, announcesEachAssignmentOnceBeforeItHappens)
{
    put({tokenNamed("a", "", 5), tokenNamed("b", "", 6)});
    TokenStore store;
    Announcements announcements(store);
    const auto expect = [&](const Seen& expected) {
        EXPECT_EQ(announcements.seen, expected);
        announcements.seen.clear();
    };

    store.load();
    expect({{2, 5, {}}, {2, 5, {}}});
    store.persist();
    expect({{2, 5, {}}});
    store.advanceCounter(store.tokens->front());
    expect({{2, 5, {}}, {2, 6, {}}});

    credentials.answerNext(Operation::update, errSecInteractionNotAllowed);
    store.persist();
    expect({{2, 6, {}}});
    store.persist();
    expect({{2, 6, lockedMessage}});

    // A failure assigns `lastError` first, a success `tokens`.
    put({tokenNamed("c", "", 7)});
    credentials.answerNext(Operation::read, errSecInteractionNotAllowed);
    store.load();
    expect({{2, 6, {}}, {2, 6, lockedMessage}});
    EXPECT_TRUE(store.tokens->empty());
    store.load();
    expect({{0, 0, lockedMessage}, {1, 7, lockedMessage}});
    EXPECT_EQ(*store.lastError, std::nullopt);
}

TEST_F(TokenStoreTest, advancesTheFirstTokenWithTheId)
{
    const auto token = tokenNamed("a", "", 5);
    auto twin = token;
    twin.issuer = "b";
    put({token, twin, tokenNamed("c", "", 1)});
    TokenStore store;
    store.advanceCounter(token);
    store.advanceCounter(twin);
    const auto& tokens = *store.tokens;
    EXPECT_EQ((std::array{tokens[0].counter, tokens[1].counter, tokens[2].counter}),
              (std::array<std::uint64_t, 3>{7, 5, 1}));
    EXPECT_EQ(storedTokens(), tokens);
}

TEST_F(TokenStoreTest, anAdvanceThatCannotBeMadeWritesAndAnnouncesNothing)
{
    const auto last = tokenNamed("a", "", std::numeric_limits<std::uint64_t>::max());
    put({last, tokenNamed("b", "", std::numeric_limits<std::uint64_t>::max() - 1)});
    TokenStore store;
    credentials.answerNext(Operation::update, errSecInteractionNotAllowed);
    store.persist();
    const auto writesBefore = writes();
    const auto tokensBefore = *store.tokens;
    const Announcements announcements(store);
    store.advanceCounter(last);
    store.advanceCounter(tokenNamed("a"));
    EXPECT_EQ(writes(), writesBefore);
    EXPECT_EQ(*store.tokens, tokensBefore);
    EXPECT_TRUE(announcements.seen.empty());
    EXPECT_EQ(*store.lastError, lockedMessage) << "the message of the failed save is gone";
    store.advanceCounter(tokensBefore.at(1));
    EXPECT_EQ(store.tokens->at(1).counter, last.counter);
}

TEST_F(TokenStoreTest, aFailedSaveKeepsTheChangeForTheNextOne)
{
    TokenStore store;
    for (const auto operation : {Operation::update, Operation::add}) {
        credentials.answerNext(operation, errSecInteractionNotAllowed);
        append(store, tokenNamed("a"));
        EXPECT_EQ(*store.lastError, lockedMessage);
        EXPECT_FALSE(credentials.items.contains(tokenStoreItem));
    }
    EXPECT_EQ(store.tokens->size(), 2U);
    store.persist();
    EXPECT_EQ(*store.lastError, std::nullopt);
    EXPECT_EQ(storedTokens(), *store.tokens);

    credentials.calls.clear();
    append(store, tokenNamed("\xff"));
    EXPECT_NE(store.lastError->value_or(""), "");
    EXPECT_TRUE(credentials.calls.empty());
    EXPECT_EQ(store.tokens->size(), 3U);
}

TEST_F(TokenStoreTest, dataThatIsNoListIsSetAsideOnceBeforeTheFirstSave)
{
    put("damaged");
    TokenStore store;
    EXPECT_TRUE(store.tokens->empty());
    EXPECT_NE(store.lastError->value_or(""), "");
    EXPECT_EQ(writes(), 0U);
    for (const auto operation : {Operation::add, Operation::read}) {
        credentials.answerNext(operation, errSecInteractionNotAllowed);
        append(store, tokenNamed("a"));
        EXPECT_EQ(*store.lastError, lockedMessage);
        EXPECT_EQ(credentials.callCount(Operation::update), 0U);
    }
    credentials.answerNext(Operation::update, errSecInteractionNotAllowed);
    store.persist();
    store.persist();
    EXPECT_EQ(*store.lastError, std::nullopt);
    EXPECT_EQ(credentials.items.at(aside(1)), "damaged");
    EXPECT_FALSE(credentials.items.contains(aside(2))) << "set aside twice";
    EXPECT_EQ(storedTokens(), *store.tokens);
}

TEST_F(TokenStoreTest, whatThisDeviceKeepsIsListedAndChangedFromStartToStart)
{
    put({tokenNamed("stored")});
    credentials.answerAlways(Operation::read, errSecInteractionNotAllowed);
    for (const Names& before : {Names{}, Names{"a"}, Names{"a", "b"}}) {
        TokenStore store;
        EXPECT_EQ(issuers(*store.tokens), before);
        EXPECT_EQ(*store.lastError, lockedMessage);
        append(store, tokenNamed(before.empty() ? "a" : before.size() == 1 ? "b" : "deleted"));
        EXPECT_EQ(*store.lastError, lockedMessage);
        store.advanceCounter(store.tokens->front());
        EXPECT_EQ(store.tokens->front().counter, before.size() + 1);
    }
    TokenStore store;
    store.tokens.modify(
        [](auto& tokens) { std::erase_if(tokens, [](auto& it) { return it.issuer == "deleted"; }); });
    store.persist();
    EXPECT_EQ(issuers(*TokenStore().tokens), (Names{"a", "b"}));
    EXPECT_EQ(writes(), 0U);

    credentials.answerAlways(Operation::read, errSecSuccess);
    store.load();
    EXPECT_EQ(*store.lastError, std::nullopt);
    EXPECT_EQ(issuers(*store.tokens), (Names{"a", "b", "stored"}));
    EXPECT_EQ(store.tokens->front().counter, 3U);
    EXPECT_EQ(storedTokens(), *store.tokens);
    EXPECT_EQ(issuers(keptTokens()), Names());
}

TEST_F(TokenStoreTest, theReserveHasWhatIsNotStoredBeforeTheItemsPlaceIsAsked)
{
    struct Waiting : ScriptedCredentialStore {
        OSStatus update(const ItemName& name, const SecretString& data) noexcept override
        {
            keptThen = *static_cast<ScriptedCredentialStore*>(kept);
            return ScriptedCredentialStore::update(name, data);
        }
        ScriptedCredentialStore keptThen;
    } waiting;
    const CredentialStoreOverride inItsPlace(waiting);
    waiting.kept = &reserve;
    waiting.items[tokenStoreItem] = encodeTokens({tokenNamed("a"), tokenNamed("b", "", 5), tokenNamed("c")});
    TokenStore store;
    waiting.answerNext(Operation::update, errSecInteractionNotAllowed);
    append(store, tokenNamed("d"));
    EXPECT_EQ(issuers(decodeTokens(waiting.keptThen.items.at(tokenStoreItem))), (Names{"d"}));
    waiting.answerNext(Operation::update, errSecInteractionNotAllowed);
    store.advanceCounter(store.tokens->at(1));
    EXPECT_EQ(issuers(keptTokens()), (Names{"b", "d"}));
    EXPECT_EQ(keptTokens().front().counter, 6U);
    store.persist();
    EXPECT_TRUE(keptTokens().empty());
    store.tokens.modify([](auto& tokens) { tokens.pop_back(); });
    store.persist();
    EXPECT_TRUE(waiting.keptThen.items.empty()) << "a deletion leaves nothing to keep";
}

TEST_F(TokenStoreTest, aFailedSaveIsTriedAgainWhenTheWindowGoesUnlessTheUserRefused)
{
    const std::tuple<OSStatus, bool, std::size_t> table[] = {
        {errSecSuccess, true, 0},
        {errSecInteractionNotAllowed, true, 1},
        {errSecDiskFull, false, 1},
        {errSecUserCanceled, true, 0},
    };
    for (const auto& [status, hasReserve, tries] : table) {
        credentials.kept = hasReserve ? &reserve : nullptr;
        put({tokenNamed("deleted")});
        TokenStore store;
        store.tokens = {};
        credentials.answerAlways(Operation::update, status);
        store.persist();
        credentials.answerAlways(Operation::update, errSecSuccess);
        const auto before = writes();
        store.persistAgain();
        store.persistAgain();
        EXPECT_EQ(writes(), before + tries) << status;
        EXPECT_EQ(storedTokens().size(), status == errSecUserCanceled ? 1U : 0U);
    }
}

TEST_F(TokenStoreTest, withoutAReserveAnItemThatIsThereAgainIsUnited)
{
    put({tokenNamed("stored")});
    credentials.isShared = true;
    reserve.answerAlways(errSecWrPerm);
    credentials.answerNext(Operation::read, errSecIO);
    TokenStore store;
    append(store, tokenNamed("a"));
    EXPECT_EQ(*store.lastError, std::nullopt);
    EXPECT_EQ(issuers(*store.tokens), (Names{"a", "stored"}));
    EXPECT_EQ(storedTokens(), *store.tokens);
}

TEST_F(TokenStoreTest, whatTheReserveTurnsOutToKeepJoinsTheList)
{
    put({tokenNamed("stored")});
    keep({tokenNamed("kept")});
    reserve.answerNext(Operation::read, errSecIO);
    credentials.answerAlways(Operation::update, errSecInteractionNotAllowed);
    TokenStore store;
    EXPECT_EQ(issuers(*store.tokens), (Names{"stored"}));
    append(store, tokenNamed("a"));
    EXPECT_EQ(issuers(*store.tokens), (Names{"stored", "a", "kept"}));
    EXPECT_EQ(issuers(keptTokens()), (Names{"a", "kept"}));

    reserve.answerNext(Operation::read, errSecDecode); // its key is back by the time of the save
    TokenStore another;
    append(another, tokenNamed("c"));
    EXPECT_EQ(issuers(keptTokens()), (Names{"c", "a", "kept"}));

    reserve.items[tokenStoreItem] = "damaged";
    TokenStore started;
    append(started, tokenNamed("b"));
    EXPECT_EQ(reserve.items.at(aside(1)), "damaged");
    EXPECT_EQ(issuers(keptTokens()), (Names{"b"}));
}

TEST_F(TokenStoreTest, whatIsKeptIsListedWhileTheItemIsUnreadable)
{
    put("damaged");
    keep({tokenNamed("kept")});
    TokenStore store;
    EXPECT_NE(store.lastError->value_or(""), "");
    EXPECT_EQ(issuers(*store.tokens), (Names{"kept"}));
    credentials.answerNext(Operation::update, errSecInteractionNotAllowed);
    append(store, tokenNamed("deleted"));
    append(store, tokenNamed("a"));
    store.tokens.modify([&](auto& tokens) { tokens.erase(tokens.begin() + 1); });
    store.persist();
    EXPECT_EQ(issuers(*TokenStore().tokens), (Names{"a", "kept"}));
    EXPECT_EQ(credentials.items.at(aside(1)), "damaged");
    EXPECT_TRUE(keptTokens().empty());
}

TEST_F(TokenStoreTest, aListThatAnotherProcessHasChangedIsUnitedWithOurs)
{
    const auto shared = tokenNamed("shared", "", 5);
    put({shared});
    TokenStore store;
    auto advanced = shared;
    advanced.counter = 8;
    put({tokenNamed("theirs"), advanced});
    credentials.answerNext(Operation::update, errSecInvalidItemRef);
    append(store, tokenNamed("ours"));
    EXPECT_EQ(*store.lastError, std::nullopt);
    EXPECT_EQ(issuers(*store.tokens), (Names{"shared", "ours", "theirs"}));
    EXPECT_EQ(store.tokens->front().counter, 8U);
    EXPECT_EQ(storedTokens(), *store.tokens);

    put("damaged");
    TokenStore other;
    put({tokenNamed("theirs")});
    append(other, tokenNamed("ours"));
    EXPECT_EQ(issuers(storedTokens()), (Names{"ours", "theirs"})) << "a list again since the load";

    put("damaged");
    TokenStore another;
    credentials.answerNext(Operation::read, errSecDecode); // by now it does not open either
    append(another, tokenNamed("ours"));
    EXPECT_EQ(*another.lastError, std::nullopt) << "the credential store sets aside what it cannot open";

    put("damaged");
    credentials.answerNext(Operation::update, errSecInvalidItemRef);
    append(store, tokenNamed("later"));
    store.persist();
    EXPECT_EQ(credentials.items.at(aside(1)), "damaged");
    EXPECT_EQ(storedTokens(), *store.tokens);
}

TEST(TokenMerge, hasEachTokenOnceWithItsLargerCounter)
{
    const auto a = tokenNamed("a", "", 3);
    const auto b = tokenNamed("b", "", 3);
    auto older = a;
    auto newer = a;
    older.counter = 2;
    newer.counter = 4;
    // clang-format off
    const struct { std::vector<AuthToken> ours, theirs, both; } table[] = {
        {{}, {a, b}, {a, b}}, {{a}, {}, {a}}, {{b}, {a}, {b, a}}, {{a, b}, {b, a}, {a, b}},
        {{a, a, b}, {newer}, {newer, a, b}}, {{b, b, a}, {newer}, {b, b, newer}}, {{a}, {older}, {a}},
        {{a, older}, {newer}, {newer, older}}, {{}, {older, a}, {a}},
    };
    // clang-format on
    for (const auto& row : table) {
        EXPECT_EQ(merged(row.ours, row.theirs), row.both);
    }
}

} // namespace MirrowvaleAuthenticator
