#include "core/StoredForm.h"
#include "storage/KeychainTokenStore.h"
#include "tests/support/ScriptedCredentialStore.h"
#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>
#include <limits>

// What users have on disk: files that version 1.0.0 made, which every later version must be able to read. A
// change that fails here needs a reader for the old form; the files stay as they are.

namespace MirrowvaleAuthenticator {

namespace {

using namespace std::string_literals;
using Algorithm = AuthToken::Algorithm;
using Kind = AuthToken::Kind;

const std::filesystem::path keptFiles = KEPT_FILES;

std::vector<AuthToken> keptTokens()
{
    constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
    using Period = std::numeric_limits<std::int64_t>;
    const auto at = Date::fromSecondsSinceReferenceDate;
    const auto id = [](std::string_view text) { return UUID::fromString(text).value(); };
    // clang-format off
    return {
        {id("00112233-4455-6677-8899-AABBCCDDEEFF"), Kind::totp, "Acme", "alice@example.com",
         "GEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQ", Algorithm::sha1, 6, 30, 0, at(801234567.12345684)},
        {id("10000000-0000-4000-8000-000000000001"), Kind::totp, "Bank \"of\" \\\u00C4\u0308/", "b\u00F6b+\U0001F511",
         "JBSWY3DPEHPK3PXP", Algorithm::sha256, 8, 60, 0, at(-978307200)},
        {id("FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF"), Kind::hotp, "\u05D1\u05E0\u05E7 \u202E\u0628\u0646\u0643",
         "a\tb\r\nc\0d\x7f\u2028"s, "mfrg gzdf-MY======", Algorithm::sha512, 7, 30, largest, at(0.1)},
        {UUID(), Kind::hotp, "", "", "", Algorithm::sha1, Period::min(), Period::max(), 1, at(0)},
    };
    // clang-format on
}

} // namespace

// To the byte and to the bit.

TEST(KeptFiles, sealedFileAndDeviceKeyAreRead)
{
    const TemporaryHome home;
    std::filesystem::copy(keptFiles, home.root, std::filesystem::copy_options::recursive);
    const auto tokens = KeychainTokenStore(tokenStoreItem.service, tokenStoreItem.account).load().tokens;
    EXPECT_EQ(encodeTokens(tokens), encodeTokens(keptTokens()));
}

TEST(KeptFiles, listInAKeyringIsRead)
{
    EXPECT_EQ(encodeTokens(decodeTokens(contents(keptFiles / "list.json"))), encodeTokens(keptTokens()));
}

} // namespace MirrowvaleAuthenticator
