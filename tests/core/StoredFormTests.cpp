#include "core/StoredForm.h"

#include <bit>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace MirrowvaleAuthenticator {

namespace {

using namespace std::string_literals;
/// The stored form of `goodToken()`.
const auto good =
    R"({"id":"00112233-4455-6677-8899-AABBCCDDEEFF","kind":"hotp","issuer":"Acme","account":"alice",)"
    R"("secretBase32":"JBSWY3DP","algorithm":"SHA256","digits":8,"period":60,"counter":7,)"
    R"("createdAt":1.5})"s;

/// The member of `good` with this key, as it stands there.
std::string memberOf(std::string_view key)
{
    const auto start = good.find("\"" + std::string(key) + "\":");
    return good.substr(start, good.find_first_of(",}", start) - start);
}

/// A list of one token, one of whose members has another key or another value.
std::string listWith(std::string_view key, const std::string& value, std::string_view newKey)
{
    auto text = good;
    const auto old = memberOf(key);
    text.replace(text.find(old), old.size(), "\"" + std::string(newKey) + "\":" + value);
    return "[" + text + "]";
}
std::string listWith(std::string_view key, const std::string& value)
{
    return listWith(key, value, key);
}

/// A list of one token with more members before its own.
std::string listWithExtra(const std::string& members)
{
    return "[{" + members + "," + good.substr(1) + "]";
}

AuthToken goodToken()
{
    const auto id = UUID::fromString("00112233-4455-6677-8899-AABBCCDDEEFF").value();
    const auto createdAt = Date::fromSecondsSinceReferenceDate(1.5);
    const auto sha256 = AuthToken::Algorithm::sha256;
    return {id, AuthToken::Kind::hotp, "Acme", "alice", "JBSWY3DP", sha256, 8, 60, 7, createdAt};
}

std::string encoded(const std::vector<AuthToken>& tokens)
{
    return std::string(encodeTokens(tokens));
}

bool isRefused(std::string_view json)
{
    try {
        decodeTokens(json);
        return false;
    } catch (const StoredFormError& error) {
        return !error.errorDescription().empty();
    }
}

std::string repeated(std::string_view piece, std::size_t count)
{
    std::string text;
    for (; count > 0; --count) {
        text += piece;
    }
    return text;
}

} // namespace

TEST(StoredForm, writesTheMembersInFieldOrder)
{
    EXPECT_EQ(encoded({}), "[]");
    EXPECT_EQ(encoded({goodToken(), goodToken()}), "[" + good + "," + good + "]");
    auto token = goodToken();
    token.digits = std::numeric_limits<std::int64_t>::min();
    token.period = std::numeric_limits<std::int64_t>::max();
    token.counter = std::numeric_limits<std::uint64_t>::max();
    token.createdAt = Date::fromSecondsSince1970(0);
    const auto json = encoded({token});
    EXPECT_NE(json.find("\"digits\":-9223372036854775808,"), std::string::npos) << json;
    EXPECT_NE(json.find("\"period\":9223372036854775807,"), std::string::npos) << json;
    EXPECT_NE(json.find("\"counter\":18446744073709551615,"), std::string::npos) << json;
    EXPECT_NE(json.find("\"createdAt\":-978307200"), std::string::npos) << json;
    EXPECT_EQ(decodeTokens(json), std::vector{token});
}

TEST(StoredForm, readsWhatAConformingWriterWrites)
{
    const auto deep = repeated(R"([{"id":)", 50'000) + "0" + repeated("}]", 50'000);
    for (const auto& json : {" [\n" + good + "\t]\r\n",
                             "[{" + memberOf("createdAt") + "," + good.substr(1, good.rfind(',') - 1) + "}]",
                             listWith("kind", R"("hotp")", "\\u006bind"),
                             listWith("id", R"("00112233-4455-6677-8899-aabbccddeeff")"),
                             listWith("issuer", R"("\u0041\u0063me")"), listWith("createdAt", "15e-1"),
                             listWithExtra(R"("extra":null)"), listWithExtra(R"("extra":1,"extra":2)"),
                             listWithExtra(R"("extra":{"id":1,"kind":[],"counter":-1})"),
                             listWithExtra(R"("":"","ID":1,"Kind":2,"issuer ":3)"),
                             listWithExtra(R"("extra":123456789012345678901234567890,"other":0.1e-400)"),
                             listWithExtra("\"extra\":" + deep),
                             listWithExtra("\"extra\":" + repeated("[", 100'000) + repeated("]", 100'000))}) {
        SCOPED_TRACE(json.substr(0, 300));
        try {
            EXPECT_EQ(decodeTokens(json), std::vector{goodToken()});
        } catch (const StoredFormError& error) {
            ADD_FAILURE() << error.what();
        }
    }
    EXPECT_TRUE(decodeTokens("[]").empty());
    EXPECT_TRUE(decodeTokens(" [ ]\n").empty());
    EXPECT_EQ(decodeTokens(listWith("createdAt", "0"))[0].createdAt, Date());
}

TEST(StoredForm, refusesAMemberThatIsNotAsItMustBe)
{
    const std::pair<std::string, std::vector<std::string>> table[] = {
        {"id",
         {R"("")", R"("{00112233-4455-6677-8899-AABBCCDDEEFF}")", R"("00112233445566778899AABBCCDDEEFF")",
          R"("00112233-4455-6677-8899-AABBCCDDEEFG")", "1", "[]"}},
        {"kind", {R"("TOTP")", R"("")", R"("totp ")", "0", "true"}},
        {"issuer",
         {"1", "true", "[]", "{}", R"(["Acme"])", R"("\ud800")", R"("\udc00\ud800")", R"("\ud800\u0041")",
          R"("\x")", R"("\u12")", "\"\n\"", "\"\x01\"", "\"\xff\"", "\"\xc0\x80\"", "\"\xed\xa0\x80\"",
          "'a'"}},
        {"account", {"0", "false", "\"\xe2\x82\""}},
        {"secretBase32", {"0", "{}", "\"\x80\""}},
        {"algorithm", {R"("sha1")", R"("SHA-1")", R"("MD5")", "1"}},
        {"digits",
         {"6.5", "true", R"("6")", "[6]", "9223372036854775808", "-9223372036854775809", "1e30", "06", "+6",
          "0x6", "6.", "-", "NaN"}},
        {"period", {"30.5", "false", R"("30")", "9223372036854775808", "-9223372036854775809", "1e-5"}},
        {"counter", {"-1", "0.5", "true", R"("0")", "{}", "18446744073709551616", "1e20"}},
        {"createdAt", {R"("0")", "true", "[]", "1e400", "-1e999", "NaN", "Infinity", ".5", "1."}}};
    ASSERT_FALSE(isRefused("[" + good + "]"));
    for (const auto& [key, texts] : table) {
        EXPECT_TRUE(isRefused(listWith(key, "0", "extra"))) << key << " is missing";
        EXPECT_TRUE(isRefused(listWith(key, "null"))) << key << " is null";
        EXPECT_TRUE(isRefused(listWith(key, repeated("[", 100'000) + repeated("]", 100'000))))
            << key << " is deep";
        EXPECT_TRUE(isRefused(listWithExtra(memberOf(key)))) << key << " occurs twice";
        for (const auto& text : texts) {
            EXPECT_TRUE(isRefused(listWith(key, text))) << key << " is " << text;
        }
    }
}

TEST(StoredForm, refusesATextThatIsNoListOfTokens)
{
    const auto list = "[" + good + "]";
    const auto nested = listWith("id", "{" + memberOf("id") + "}", "extra");
    // clang-format off
    const std::string table[] = {
        ""s, " "s, "null"s, "{}"s, good, "\"[]\""s, "1"s, "["s, "]"s, "[]]"s, "[][]"s, "[] x"s, "[]\0"s,
        "[]\0x"s, "[,]"s, "[1]"s, "[null]"s, "[[]]"s, "[{}]"s, R"(["a"])"s, "[" + list + "]",
        "[" + good + ",]", "[" + good + ",1]", "[" + good + good + "]", list + list, list + "//",
        "/**/" + list, list + "\xff", "[" + good + ",null]", listWithExtra("\"extra\":\"\xff\""),
        listWithExtra("\"\xff\":1"), listWithExtra(R"("extra":"\ud800")"), listWithExtra("\"extra\":01"),
        listWithExtra("\"extra\":"), nested, repeated("[", 1'000'000), repeated(R"({"a":)", 1'000'000),
    };
    // clang-format on
    for (const auto& json : table) {
        EXPECT_TRUE(isRefused(json)) << json.substr(0, 300);
    }
    for (std::size_t size = 0; size < list.size(); ++size) {
        EXPECT_TRUE(isRefused(list.substr(0, size))) << "cut to " << size;
    }
    EXPECT_EQ(encoded(decodeTokens(list)), encoded({goodToken()}));
}

TEST(StoredForm, instantsReadBackBitForBit)
{
    using Limits = std::numeric_limits<double>;
    // clang-format off
    std::vector<double> instants = {
        0.0, -0.0, Limits::denorm_min(), -Limits::denorm_min(), Limits::min(), Limits::max(),
        Limits::lowest(), Limits::epsilon(), 0.1, 1.0 / 3, 1e-310, -978307200, 1e15, 1e16, 1e17, 1e22, 1e23,
        9007199254740991.0, 123456789.12345679, 18446744073709551616.0,
    };
    // clang-format on
    std::mt19937_64 random(754);
    while (instants.size() < 3000) {
        if (const auto value = std::bit_cast<double>(random()); std::isfinite(value)) {
            instants.push_back(value);
        }
    }
    for (const double instant : instants) {
        auto token = goodToken();
        token.createdAt = Date::fromSecondsSinceReferenceDate(instant);
        const auto back = decodeTokens(encoded({token})).at(0).createdAt.secondsSinceReferenceDate();
        EXPECT_EQ(std::bit_cast<std::uint64_t>(back), std::bit_cast<std::uint64_t>(instant)) << instant;
    }
}

TEST(StoredForm, generatedListsReadBackByteForByte)
{
    const std::string pieces[] = {"a",    " ", "\"",      "\\",     "/",      "\n",     "\0"s, "\x1f",
                                  "\x7f", "é", "e\u0301", "\u2028", "\uFEFF", "\uFFFF", "😀",   "\u212A"};
    std::mt19937_64 random(1);
    const auto text = [&] {
        std::string result;
        for (auto length = random() % 12; length > 0; --length) {
            result += pieces[random() % std::size(pieces)];
        }
        return result;
    };
    const auto integer = [&] { return random() >> random() % 64; };
    for (int round = 0; round < 300; ++round) {
        std::vector<AuthToken> tokens(random() % 6);
        for (auto& token : tokens) {
            token = goodToken();
            token.kind = allKinds[random() % 2];
            token.issuer = text();
            token.account = text();
            token.secretBase32 = text();
            token.algorithm = allAlgorithms[random() % 3];
            token.digits = static_cast<std::int64_t>(integer());
            token.period = static_cast<std::int64_t>(integer());
            token.counter = integer();
        }
        const auto json = encoded(tokens);
        const auto back = decodeTokens(json);
        ASSERT_EQ(back, tokens);
        for (std::size_t index = 0; index < tokens.size(); ++index) {
            EXPECT_EQ(back[index].issuer, tokens[index].issuer);
            EXPECT_EQ(back[index].account, tokens[index].account);
            EXPECT_EQ(back[index].secretBase32, tokens[index].secretBase32);
        }
    }
}

TEST(StoredForm, whatCannotBeWrittenFails)
{
    for (const double instant :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity()}) {
        auto token = goodToken();
        token.createdAt = Date::fromSecondsSinceReferenceDate(instant);
        EXPECT_THROW(encodeTokens({goodToken(), token}), StoredFormError) << instant;
    }
    for (const auto field : {&AuthToken::issuer, &AuthToken::account, &AuthToken::secretBase32}) {
        for (const auto* invalid : {"\xff", "a\xc3", "\xed\xa0\x80"}) {
            auto token = goodToken();
            token.*field = invalid;
            EXPECT_THROW(encodeTokens({token}), StoredFormError);
        }
    }
}

} // namespace MirrowvaleAuthenticator
