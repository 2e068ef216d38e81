#include "core/StoredForm.h"

#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>

// The fuzz target checks what is read and what is refused: it compares with another reader of JSON.

namespace MirrowvaleAuthenticator {

namespace {

using namespace std::string_literals;

/// The environment's locale is in force from the start, as the toolkit has it.
[[maybe_unused]] const char* const userLocale = std::setlocale(LC_ALL, "");

/// A list of one token, with more members before its own.
std::string listWith(const std::string& members = "")
{
    return "[{" + members
        + R"("id":"00112233-4455-6677-8899-AABBCCDDEEFF","kind":"hotp","issuer":"Acme","account":"alice",)"
          R"("secretBase32":"JBSWY3DP","algorithm":"SHA256","digits":-8,"period":60,"counter":7,)"
          R"("createdAt":1.5}])";
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

TEST(StoredForm, staysAsItIsWhereverTheUserLives)
{
    if (const char* decimalPoint = std::getenv("DECIMAL_POINT")) {
        ASSERT_STREQ(std::localeconv()->decimal_point, decimalPoint);
    }
    const auto id = UUID::fromString("00112233-4455-6677-8899-AABBCCDDEEFF").value();
    const auto at = Date::fromSecondsSinceReferenceDate;
    const auto sha256 = AuthToken::Algorithm::sha256;
    const AuthToken token{id, AuthToken::Kind::hotp, "Acme", "alice", "JBSWY3DP", sha256, -8, 60, 7, at(1.5)};
    AuthToken other;
    other.createdAt = at(-978307200);
    const auto stored = listWith().substr(0, listWith().size() - 1)
        + R"(,{"id":"00000000-0000-0000-0000-000000000000","kind":"totp","issuer":"","account":"",)"
          R"("secretBase32":"","algorithm":"SHA1","digits":6,"period":30,"counter":0,)"
          R"("createdAt":-978307200.0}])";
    EXPECT_EQ(std::string(encodeTokens({token, other})), stored);
    EXPECT_EQ(decodeTokens(stored), (std::vector{token, other}));
    EXPECT_EQ(std::string(encodeTokens({})), "[]");
}

TEST(StoredForm, isReadHoweverDeepItGoes)
{
    const auto deep = repeated(R"([{"id":)", 500'000) + "0" + repeated("}]", 500'000);
    EXPECT_EQ(decodeTokens(listWith("\"extra\":" + deep + ",")).size(), 1U);
    for (const auto& json : {listWith("\"extra\":" + repeated(R"({"a":)", 1'000'000)),
                             listWith("\"issuer\":" + deep + ","), repeated("[", 1'000'000)}) {
        EXPECT_THROW(decodeTokens(json), StoredFormError) << json.substr(0, 300);
    }
}

} // namespace MirrowvaleAuthenticator
