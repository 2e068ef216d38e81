#include "tests/storage/TokenStoreFixture.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <tuple>

namespace MirrowvaleAuthenticator {

TEST_F(TokenStoreTest, aLoadSortsByIssuerAsTheUsersLocaleDoesWithoutRegardToCaseAndWritesNothing)
{
    const std::string longName(300, 'x');
    const std::tuple<const char*, Names, Names> table[] = {
        {"en_US.UTF-8", {longName + "b", longName + "a", "y"}, {longName + "a", longName + "b", "y"}},
        {"en_US.UTF-8", {"beta", "Alpha", "", " ", "alpha"}, {" ", "Alpha", "alpha", "beta", ""}},
        {"C", {"Tokens", "token", "", "TOKEN", "toke"}, {"toke", "token", "", "TOKEN", "Tokens"}},
        {"de_DE.UTF-8",
         {"z", "É", "résumé", "e\u0301", "i", "I", "resume", "ö"},
         {"É", "e\u0301", "i", "I", "ö", "resume", "résumé", "z"}},
        {"sv_SE.UTF-8", {"ö", "z"}, {"z", "ö"}},
        {"tr_TR.UTF-8", {"i", "I", "ı"}, {"I", "ı", "i"}},
        {"no such locale!", {"Beta", "alpha"}, {"alpha", "Beta"}},
        {"C", Names(10'000, "many"), Names(10'000, "many")},
    };
    for (const auto& [locale, storedNames, loadedNames] : table) {
        setenv("LC_ALL", locale, 1);
        std::vector<AuthToken> tokens;
        for (const auto& name : storedNames) {
            tokens.push_back(tokenNamed(name, "account", tokens.size()));
        }
        put(tokens);
        const TokenStore store;
        EXPECT_EQ(issuers(*store.tokens), loadedNames);
        const auto isSwapped = [](const auto& one, const auto& next) {
            return one.issuer == next.issuer && one.counter > next.counter;
        };
        EXPECT_EQ(std::ranges::adjacent_find(*store.tokens, isSwapped), store.tokens->end());
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

TEST_F(TokenStoreTest, announcesEachAssignmentOnceBeforeItHappens)
{
    put({tokenNamed("a", "", 5), tokenNamed("b", "", 6)});
    TokenStore store;
    std::vector<std::tuple<std::size_t, std::uint64_t, MaybeText>> seen; // tokens, first counter, last error
    store.objectWillChange = [&] {
        seen.emplace_back(store.tokens->size(), store.tokens->empty() ? 0 : store.tokens->front().counter,
                          *store.lastError);
    };
    const auto expect = [&](const decltype(seen)& expected) {
        EXPECT_EQ(seen, expected);
        seen.clear();
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

TEST_F(TokenStoreTest, advancesTheFirstTokenWithTheIdOrLeavesAllAsItIs)
{
    constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
    const auto token = tokenNamed("a", "", 5);
    auto twin = token;
    twin.issuer = "b";
    const auto last = tokenNamed("c", "", largest - 1);
    put({token, twin, last});
    TokenStore store;
    store.advanceCounter(token);
    store.advanceCounter(twin);
    store.advanceCounter(last);
    const auto advanced = *store.tokens;
    EXPECT_EQ((std::array{advanced[0].counter, advanced[1].counter, advanced[2].counter}),
              (std::array<std::uint64_t, 3>{7, 5, largest}));
    EXPECT_EQ(storedTokens(), advanced);

    credentials.answerNext(Operation::update, errSecInteractionNotAllowed);
    store.persist();
    const auto writesBefore = writes();
    store.advanceCounter(last);
    store.advanceCounter(tokenNamed("a"));
    EXPECT_EQ(writes(), writesBefore);
    EXPECT_EQ(*store.tokens, advanced);
    EXPECT_EQ(*store.lastError, lockedMessage) << "the message of the failed save is gone";
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
