#include "core/StoredForm.h"

#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>

// The fuzz target checks what is read and what is refused: it compares with another reader of JSON.

namespace MirrowvaleAuthenticator {

namespace {

/// The environment's locale is in force from the start, as the toolkit has it.
[[maybe_unused]] const char* const userLocale = std::setlocale(LC_ALL, "");

/// A list of one token, with more members before its own.
std::string listWith(const std::string& members, const std::string& createdAt = "1.5")
{
    return "[{" + members
        + R"("id":"00112233-4455-6677-8899-AABBCCDDEEFF","kind":"hotp","issuer":"Acme","account":"alice",)"
          R"("secretBase32":"JBSWY3DP","algorithm":"SHA256","digits":-8,"period":60,"counter":7,)"
          R"("createdAt":)"
        + createdAt + "}]";
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
    for (const auto* createdAt : {"1.5", "-978307200.0"}) {
        const auto stored = listWith("", createdAt);
        EXPECT_EQ(std::string(encodeTokens(decodeTokens(stored))), stored);
    }
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
