#include "platform/text/UUID.h"

#include <gtest/gtest.h>
#include <unordered_set>

namespace MirrowvaleAuthenticator {

TEST(UUID, readsThe36CharacterFormInEitherCaseAndNothingElse)
{
    using namespace std::string_view_literals;
    for (const auto text :
         {"00112233-4455-6677-8899-AABBCCDDEEFF"sv, "00112233-4455-6677-8899-aAbBccddeeff"sv}) {
        const auto id = UUID::fromString(text);
        ASSERT_TRUE(id.has_value()) << text;
        EXPECT_EQ(id->bytes[15], 0xff);
        EXPECT_EQ(id->string(), "00112233-4455-6677-8899-AABBCCDDEEFF");
    }
    for (const auto text :
         {""sv, "{00112233-4455-6677-8899-AABBCCDDEEFF}"sv, "00112233445566778899AABBCCDDEEFF"sv,
          "00112233-4455-6677-8899-AABBCCDDEEF"sv, "00112233-4455-6677-8899-AABBCCDDEEFF0"sv,
          " 0112233-4455-6677-8899-AABBCCDDEEFF"sv, "0011223-34455-6677-8899-AABBCCDDEEFF"sv,
          "00112233-4455-6677-88990AABBCCDDEEFF"sv, "00112233-4455-6677-8899-AABBCCDDEEFG"sv,
          "00112233-4455-6677-8899-AABBCCDDEE-F"sv, "0x112233-4455-6677-8899-AABBCCDDEEFF"sv,
          "00112233-4455-6677-8899-AABBCCDDEE\0\0"sv, "00112233-4455-6677-8899-AABBCCDDEE\u00e9"sv}) {
        EXPECT_FALSE(UUID::fromString(text).has_value()) << text;
    }
}

TEST(UUID, makesDistinctRandomIdentifiers)
{
    std::unordered_set<UUID, UUIDHash> seen;
    for (int round = 0; round < 1000; ++round) {
        const auto id = UUID::random();
        EXPECT_TRUE(seen.insert(id).second);
        EXPECT_EQ(id.bytes[6] >> 4, 4) << "version";
        EXPECT_EQ(id.bytes[8] >> 6, 2) << "variant";
        EXPECT_EQ(UUID::fromString(id.string()), id);
    }
}

} // namespace MirrowvaleAuthenticator
