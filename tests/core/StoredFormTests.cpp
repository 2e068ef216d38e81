#include "core/StoredForm.h"

#include <bit>
#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <nlohmann/json.hpp>

namespace MirrowvaleAuthenticator {

namespace {

using namespace std::string_literals;

/// The environment's locale is in force from the start, as the toolkit has it.
[[maybe_unused]] const char* const userLocale = std::setlocale(LC_ALL, "");

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
    token.kind = AuthToken::Kind::totp;
    token.digits = std::numeric_limits<std::int64_t>::min();
    token.period = std::numeric_limits<std::int64_t>::max();
    token.counter = std::numeric_limits<std::uint64_t>::max();
    token.createdAt = Date::fromSecondsSince1970(0);
    for (const auto& [algorithm, name] :
         {std::pair(AuthToken::Algorithm::sha1, "SHA1"), std::pair(AuthToken::Algorithm::sha512, "SHA512")}) {
        token.algorithm = algorithm;
        const auto json = encoded({token});
        EXPECT_EQ(json.substr(json.find("\"algorithm")),
                  "\"algorithm\":\""s + name
                      + R"(","digits":-9223372036854775808,"period":9223372036854775807,)"
                        R"("counter":18446744073709551615,"createdAt":-978307200.0}])");
        EXPECT_NE(json.find(R"("kind":"totp",)"), std::string::npos);
        EXPECT_EQ(decodeTokens(json), std::vector{token});
    }
}

TEST(StoredForm, writesTextsThatAConformingReaderGetsBack)
{
    std::vector<std::string> texts = {"", "é", "a\u2028b", "ends in \\", "\"quoted\""};
    for (int byte = 0; byte < 0x80; ++byte) {
        texts.push_back(std::string("a") + static_cast<char>(byte) + "b");
    }
    for (const auto& text : texts) {
        auto token = goodToken();
        token.issuer = text;
        EXPECT_EQ(nlohmann::json::parse(encoded({token})).at(0).at("issuer"), text);
        EXPECT_EQ(decodeTokens(encoded({token}))[0].issuer, text);
    }
}

TEST(StoredForm, readsWhatAConformingWriterWrites)
{
    const auto deep = repeated(R"([{"id":)", 500'000) + "0" + repeated("}]", 500'000);
    for (const auto& json :
         {" [\n" + good + "\t]\r\n",
          "[{" + memberOf("createdAt") + "," + good.substr(1, good.rfind(',') - 1) + "}]",
          listWith("kind", R"("hotp")", "\\u006bind"),
          listWith("id", R"("00112233-4455-6677-8899-aabbccddeeff")"),
          listWith("issuer", R"("\u0041\u0063me")"), listWith("createdAt", "15e-1"),
          listWithExtra(R"("extra":null)"), listWithExtra(R"("extra":1,"extra":2)"),
          listWithExtra(R"("extra":{"id":1,"kind":[],"counter":-1})"),
          listWithExtra(R"("":"","ID":1,"Kind":2,"issuer ":3)"),
          listWithExtra(R"("extra":-1e999,"\ud800":"\udc00")"), listWithExtra("\"extra\":" + deep)}) {
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
    ASSERT_FALSE(isRefused("[" + good + "]"));
    // clang-format off
    for (const auto& [key, text] : {
             std::pair("id", R"("00112233445566778899AABBCCDDEEFF")"), {"kind", R"("TOTP")"},
             {"issuer", R"("\ud800")"}, {"account", "true"}, {"secretBase32", "0"}, {"algorithm", R"("sha1")"},
             {"digits", "9223372036854775808"}, {"period", "-9223372036854775809"},
             {"counter", "18446744073709551616"}, {"createdAt", "1e400"}}) {
        // clang-format on
        EXPECT_TRUE(isRefused(listWith(key, "0", "extra"))) << key << " is missing";
        EXPECT_TRUE(isRefused(listWith(key, "null"))) << key << " is null";
        EXPECT_TRUE(isRefused(listWith(key, repeated("[", 100'000) + repeated("]", 100'000))))
            << key << " is deep";
        EXPECT_TRUE(isRefused(listWithExtra(memberOf(key)))) << key << " occurs twice";
        EXPECT_TRUE(isRefused(listWith(key, text))) << key << " is " << text;
    }
}

TEST(StoredForm, refusesATextThatIsNoListOfTokens)
{
    const auto list = "[" + good + "]";
    const auto nested = listWith("id", "{" + memberOf("id") + "}", "extra");
    for (const auto& json :
         {good, "[]\0"s, "[" + list + "]", list + list, listWithExtra("\"extra\":\"\xff\""),
          listWithExtra("\"extra\":[tru]"), nested, repeated("[", 1'000'000),
          listWithExtra("\"extra\":" + repeated(R"({"a":)", 1'000'000))}) {
        EXPECT_TRUE(isRefused(json)) << json.substr(0, 300);
    }
    for (std::size_t size = 0; size < list.size(); ++size) {
        EXPECT_TRUE(isRefused(list.substr(0, size))) << "cut to " << size;
    }
    EXPECT_EQ(encoded(decodeTokens(list)), encoded({goodToken()}));
}

TEST(StoredForm, instantsReadBackBitForBit)
{
    if (const char* decimalPoint = std::getenv("DECIMAL_POINT")) {
        ASSERT_STREQ(std::localeconv()->decimal_point, decimalPoint);
    }
    using Limits = std::numeric_limits<double>;
    for (const double instant : {0.0, -0.0, Limits::denorm_min(), -Limits::denorm_min(), Limits::min(),
                                 Limits::max(), Limits::lowest(), 0.1, 1.0 / 3, 1e-310, 1e16, 1e23,
                                 9007199254740991.0, 123456789.12345679, 18446744073709551616.0}) {
        auto token = goodToken();
        token.createdAt = Date::fromSecondsSinceReferenceDate(instant);
        const auto back = decodeTokens(encoded({token})).at(0).createdAt.secondsSinceReferenceDate();
        EXPECT_EQ(std::bit_cast<std::uint64_t>(back), std::bit_cast<std::uint64_t>(instant)) << instant;
    }
}

TEST(StoredForm, whatCannotBeWrittenFails)
{
    using Limits = std::numeric_limits<double>;
    for (const double instant : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity()}) {
        auto token = goodToken();
        token.createdAt = Date::fromSecondsSinceReferenceDate(instant);
        EXPECT_THROW(encodeTokens({goodToken(), token}), StoredFormError) << instant;
    }
    for (const auto field : {&AuthToken::issuer, &AuthToken::account, &AuthToken::secretBase32}) {
        auto token = goodToken();
        token.*field = "a\xc3";
        EXPECT_THROW(encodeTokens({token}), StoredFormError);
    }
}

} // namespace MirrowvaleAuthenticator
