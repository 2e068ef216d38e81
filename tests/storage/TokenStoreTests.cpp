#include "tests/storage/TokenStoreFixture.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <tuple>

namespace MirrowvaleAuthenticator {

namespace {

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
    credentials.hasData = false;
    for (const bool hasItem : {true, false}) {
        EXPECT_TRUE(TokenStore().tokens->empty());
        EXPECT_EQ(*TokenStore().lastError, std::nullopt);
        EXPECT_EQ(credentials.items.erase(tokenStoreItem) == 1, hasItem) << "nothing was written";
    }
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
    auto left = std::make_unique<Announcements>(store);
    left.reset();
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

TEST_F(TokenStoreTest, whatCannotBeEncodedIsToldAndStays)
{
    TokenStore store;
    append(store, tokenNamed("\xff"));
    EXPECT_NE(store.lastError->value_or(""), "");
    EXPECT_EQ(writes(), 0U);
    EXPECT_EQ(store.tokens->size(), 1U);
}

} // namespace MirrowvaleAuthenticator
