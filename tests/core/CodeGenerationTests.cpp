#include "core/CodeGeneration.h"

#include <gtest/gtest.h>
#include <limits>
#include <tuple>

namespace MirrowvaleAuthenticator {

namespace {

using Algorithm = AuthToken::Algorithm;
using Kind = AuthToken::Kind;

constexpr auto sha1Secret = "GEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQ";
constexpr auto sha256Secret = "GEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQGEZA====";
constexpr auto sha512Secret =
    "GEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQ"
    "GEZDGNBVGY3TQOJQGEZDGNA=";

constexpr auto smallest = std::numeric_limits<std::int64_t>::min();
constexpr auto largest = std::numeric_limits<std::int64_t>::max();
constexpr auto infinity = std::numeric_limits<double>::infinity();

AuthToken token(Kind kind, std::int64_t period = 30, std::int64_t digits = 6, std::uint64_t counter = 0)
{
    AuthToken result;
    result.kind = kind;
    result.secretBase32 = sha1Secret;
    result.period = period;
    result.digits = digits;
    result.counter = counter;
    return result;
}

Date at(double secondsSince1970)
{
    return Date::fromSecondsSince1970(secondsSince1970);
}

/// The code, or the message of its failure.
template <typename Generate>
std::string codeOrMessage(Generate generate)
{
    try {
        return generate();
    } catch (const LocalizedError& error) {
        return error.errorDescription();
    }
}

} // namespace

TEST(CodeGeneration, givesTheVectorsOfRFC4226)
{
    const std::string codes[] = {"755224", "287082", "359152", "969429", "338314",
                                 "254676", "287922", "162583", "399871", "520489"};
    for (std::uint64_t counter = 0; counter < std::size(codes); ++counter) {
        EXPECT_EQ(generateOTP(sha1Secret, counter, Algorithm::sha1, 6), codes[counter]);
        const auto hotp = token(Kind::hotp, 30, 6, counter);
        for (const double instant : {0.0, 59.0, -1e300, infinity}) {
            EXPECT_EQ(currentCode(hotp, at(instant)), codes[counter]);
        }
    }
    // Long texts are decoded in other memory than short ones.
    for (const std::size_t blanks : {172, 173, 174, 100'000}) {
        EXPECT_EQ(generateOTP(std::string(blanks, ' ') + sha1Secret, 0, Algorithm::sha1, 6), codes[0]);
    }
    EXPECT_EQ(generateOTP(sha1Secret, 0, Algorithm::sha1, 7), "4755224");
    EXPECT_EQ(generateOTP(sha1Secret, 0, Algorithm::sha1, 8), "84755224");
}

TEST(CodeGeneration, takesAKeyLargerThanABlockOfTheHash)
{
    std::string secret; // 131 bytes of 0xAA, whose codes are another implementation's
    while (secret.size() < 210) {
        secret += "VK";
    }
    EXPECT_EQ(generateOTP(secret, 1, Algorithm::sha1, 8), "81922472");
    EXPECT_EQ(generateOTP(secret, 1, Algorithm::sha256, 8), "75738337");
    EXPECT_EQ(generateOTP(secret, 1, Algorithm::sha512, 8), "95076744");
}

TEST(CodeGeneration, givesTheVectorsOfRFC6238)
{
    const std::pair<Algorithm, const char*> keys[] = {
        {Algorithm::sha1, sha1Secret}, {Algorithm::sha256, sha256Secret}, {Algorithm::sha512, sha512Secret}};
    // clang-format off
    const struct { double instant; const char* codes[3]; } table[] = {
        {59, {"94287082", "46119246", "90693936"}}, {1111111109, {"07081804", "68084774", "25091201"}},
        {1111111111, {"14050471", "67062674", "99943326"}}, {1234567890, {"89005924", "91819424", "93441116"}},
        {2000000000, {"69279037", "90698825", "38618901"}}, {20000000000, {"65353130", "77737706", "47863826"}},
    };
    // clang-format on
    auto totp = token(Kind::totp, 30, 8);
    for (const auto& row : table) {
        for (std::size_t key = 0; key < std::size(keys); ++key) {
            std::tie(totp.algorithm, totp.secretBase32) = keys[key];
            EXPECT_EQ(currentCode(totp, at(row.instant)), row.codes[key]);
        }
    }
}

TEST(CodeGeneration, failsInTheOrderOfItsChecks)
{
    const auto badDigits = "Only 6, 7, and 8 digit OTP codes are supported.";
    const auto badSecret = "The token secret is not valid Base32.";
    // clang-format off
    const struct { const char* secret; std::int64_t digits; const char* message; } table[] = {
        {"", 5, badDigits}, {"ABC1", 9, badDigits}, {sha1Secret, 0, badDigits}, {sha1Secret, -6, badDigits},
        {sha1Secret, smallest, badDigits}, {sha1Secret, largest, badDigits},
        {sha1Secret, (std::int64_t{1} << 32) + 6, badDigits}, {"", 6, badSecret}, {" == ", 7, badSecret},
        {"A", 8, badSecret}, {"ABC1", 6, "Invalid Base32 character: 1"},
        {"AB-C", 6, "Invalid Base32 character: -"},
    };
    // clang-format on
    for (const auto& row : table) {
        SCOPED_TRACE(testing::Message() << row.secret << " " << row.digits);
        for (const auto kind : allKinds) {
            auto failing = token(kind, 30, row.digits);
            failing.secretBase32 = row.secret;
            EXPECT_EQ(codeOrMessage([&] { return currentCode(failing, at(59)); }), row.message);
        }
    }
}

TEST(CodeGeneration, codeAndCountdownAgreeOnTheStep)
{
    // clang-format off
    const struct { std::int64_t period; double instant; std::int64_t left; std::uint64_t counter; } table[] = {
        {30, 0, 30, 0}, {30, 1200, 30, 40}, {30, 1229.999, 1, 40}, {30, 1230, 30, 41}, {30, 1200.5, 30, 40},
        {30, 1201, 29, 40}, {0, 1234, 1, 1234}, {-5, 1234.5, 1, 1234}, {smallest, 999, 1, 999},
        {largest, 1, largest - 1, 0}, {60, 1259, 1, 20}, {1, 77, 1, 77}, {7, 20'000'000'004.75, 2, 2'857'142'857},
        {1, 1.8446744073709e19, 1, 18'446'744'073'709'000'704U},
    };
    // clang-format on
    for (const auto& row : table) {
        SCOPED_TRACE(testing::Message() << row.period << " " << row.instant);
        const auto totp = token(Kind::totp, row.period);
        EXPECT_EQ(currentCode(totp, at(row.instant)),
                  generateOTP(sha1Secret, row.counter, Algorithm::sha1, 6));
        EXPECT_EQ(secondsRemaining(totp, at(row.instant)), row.left);
        EXPECT_EQ(secondsRemaining(token(Kind::hotp, row.period), at(row.instant)), 0);
    }
}

TEST(CodeGeneration, noInstantAndNoPeriodDoesHarm)
{
    constexpr double pastLastCounter = 18446744073709551616.0;
    // clang-format off
    const double instants[] = {
        -0.25, -1, -31, -978307200, -9.3e18, -1e300, infinity, -infinity, 1e300, 9.3e18, pastLastCounter,
        1.8446744073709e19, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::max(),
        std::numeric_limits<double>::lowest(), -std::numeric_limits<double>::denorm_min(),
    };
    // clang-format on
    for (const double instant : instants) {
        for (const std::int64_t period : {smallest, std::int64_t{-1}, std::int64_t{0}, std::int64_t{1},
                                          std::int64_t{30}, largest - 1, largest}) {
            SCOPED_TRACE(testing::Message() << instant << " / " << period);
            const auto totp = token(Kind::totp, period);
            const auto step = std::max<std::int64_t>(period, 1);
            const auto left = secondsRemaining(totp, at(instant));
            EXPECT_TRUE(left >= 1 && left <= step) << left;
            // An instant is held to less than a microsecond: what lies closer to 1970 than that is 1970.
            const double held = at(instant).secondsSince1970();
            const bool hasCounter = held >= 0 && held / static_cast<double>(step) < pastLastCounter;
            const auto code = codeOrMessage([&] { return currentCode(totp, at(instant)); });
            EXPECT_EQ(code.size() == 6, hasCounter) << code;
        }
    }
}

} // namespace MirrowvaleAuthenticator
