#include "storage/TokenMerge.h"
#include "tests/storage/TokenStoreFixture.h"

#include <tuple>

namespace MirrowvaleAuthenticator {

TEST_F(TokenStoreTest, theReserveHasWhatIsNotStoredAndNothingElse)
{
    put({tokenNamed("a"), tokenNamed("b", "", 5), tokenNamed("c")});
    TokenStore store;
    credentials.answerAlways(Operation::update, errSecInteractionNotAllowed);
    append(store, tokenNamed("d"));
    EXPECT_EQ(issuers(keptTokens()), (Names{"d"}));
    store.advanceCounter(store.tokens->at(1));
    EXPECT_EQ(issuers(keptTokens()), (Names{"b", "d"}));
    EXPECT_EQ(keptTokens().front().counter, 6U);
    const auto deleteLast = [&] {
        store.tokens.modify([](auto& tokens) { tokens.pop_back(); });
        store.persist();
    };
    deleteLast();
    EXPECT_EQ(issuers(keptTokens()), (Names{"b"}));
    credentials.answerAlways(errSecSuccess);
    store.persist();
    EXPECT_TRUE(keptTokens().empty());
    credentials.answerNext(Operation::update, errSecInteractionNotAllowed);
    deleteLast();
    EXPECT_TRUE(keptTokens().empty()) << "a deletion leaves nothing to keep";
}

TEST_F(TokenStoreTest, whatIsKeptIsChangedFromStartToStart)
{
    credentials.answerAlways(Operation::read, errSecInteractionNotAllowed);
    keep({tokenNamed("a", "", 5), tokenNamed("deleted")});
    TokenStore store;
    store.tokens.modify([](auto& tokens) { tokens.pop_back(); });
    store.advanceCounter(store.tokens->front());
    const TokenStore next;
    EXPECT_EQ(issuers(*next.tokens), Names{"a"});
    EXPECT_EQ(next.tokens->front().counter, 6U);
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
    EXPECT_FALSE(credentials.items.contains(aside(2))) << "set aside twice";
    EXPECT_TRUE(keptTokens().empty());
}

TEST_F(TokenStoreTest, aListThatAnotherProcessHasChangedIsUnitedWithOurs)
{
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
    append(other, tokenNamed("later"));
    other.persist();
    EXPECT_EQ(credentials.items.at(aside(1)), "damaged");
    EXPECT_EQ(storedTokens(), *other.tokens);
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
